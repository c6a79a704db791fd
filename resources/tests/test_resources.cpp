// What the program carries: which files, how they are stored, and whether Qt can use them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QDirIterator>
#include <QFile>
#include <QGroupBox>
#include <QIcon>
#include <QImageReader>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QResource>
#include <QScrollBar>
#include <QSet>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "init_resources.h"

namespace {

const char* const image_names =
    "arrowBottom arrowLeft arrowRight arrowTop bottomArrow bottomArrowHover checkBox checkBoxChecked "
    "checkBoxCheckedHover checkBoxCheckedPressed checkBoxHover checkBoxIndeterminate "
    "checkBoxIndeterminateHover "
    "checkBoxIndeterminatePressed checkBoxPressed close closeHover closePressed delete deleteHover "
    "deletePressed "
    "downButton error feedback feedbackHover feedbackPressed information left maximize maximizeHover "
    "maximizePressed minimize minimizeHover minimizePressed nscc open openHover openPressed progressBar "
    "progressBarChunk question radioButton radioButtonChecked radioButtonCheckedHover "
    "radioButtonCheckedPressed "
    "radioButtonHover radioButtonPressed restore restoreHover restorePressed right scan skin skinHover "
    "skinPressed success topArrow topArrowHover transfer upButton warning";

QStringList images() {
    return QString::fromLatin1(image_names).split(QLatin1Char(' '));
}

QString image_path(const QString& name) {
    return QStringLiteral(":/qss/white/%1.png").arg(name);
}

QByteArray read_file(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QString style_sheet() {
    return QString::fromLatin1(read_file(QStringLiteral(":/qss/white.qss")));
}

/** The style sheet without comments and with every run of white space as one blank. */
QString bare_style_sheet() {
    static const QRegularExpression comment(QStringLiteral("/\\*.*?\\*/"),
                                            QRegularExpression::DotMatchesEverythingOption);
    return style_sheet().remove(comment).simplified();
}

/** The declarations of all rules whose list of selectors holds this one, in their order. */
QString rules_of(const QString& selector) {
    static const QRegularExpression rule(QStringLiteral("([^{}]+)\\{([^{}]*)\\}"));
    QString found;
    auto matches = rule.globalMatch(bare_style_sheet());
    while (matches.hasNext()) {
        const auto match = matches.next();
        const auto selectors = match.captured(1).split(QLatin1Char(','));
        const auto same = [&](const QString& each) { return each.trimmed() == selector; };
        if (std::any_of(selectors.begin(), selectors.end(), same)) found += match.captured(2);
    }
    return found.simplified();
}

QStringList g_warnings;

void keep_warning(QtMsgType, const QMessageLogContext&, const QString& text) {
    g_warnings.append(text);
}

/** Collects what Qt says while it lives. */
class warnings_kept {
public:
    warnings_kept() : before_(qInstallMessageHandler(keep_warning)) { g_warnings.clear(); }
    ~warnings_kept() { qInstallMessageHandler(before_); }
    warnings_kept(const warnings_kept&) = delete;
    warnings_kept& operator=(const warnings_kept&) = delete;

private:
    QtMessageHandler before_;
};

/** One of every kind of widget that the style sheet speaks of. */
std::unique_ptr<QDialog> widgets() {
    auto dialog = std::make_unique<QDialog>();
    auto* layout = new QVBoxLayout(dialog.get());
    auto* tabs = new QTabWidget;
    tabs->setObjectName(QStringLiteral("main_tab"));
    tabs->setTabsClosable(true);
    tabs->addTab(new QTableWidget(2, 2), QStringLiteral("tab"));
    auto* progress = new QProgressBar;
    progress->setValue(50);
    auto* read_only = new QLineEdit;
    read_only->setReadOnly(true);
    auto* tree = new QTreeWidget;
    tree->addTopLevelItem(new QTreeWidgetItem({QStringLiteral("item")}));
    auto* menu_bar = new QMenuBar;
    menu_bar->addMenu(QStringLiteral("menu"))->addAction(QStringLiteral("entry"));
    const QList<QWidget*> all = {
        menu_bar,         tabs,          tree,           progress,
        read_only,        new QLineEdit, new QComboBox,  new QSpinBox,
        new QDateEdit,    new QCheckBox, new QLabel,     new QPushButton(QStringLiteral("button")),
        new QRadioButton, new QGroupBox, new QScrollBar, new QCalendarWidget,
        new QStatusBar};
    for (auto* widget : all)
        layout->addWidget(widget);
    return dialog;
}

/** Whether Qt's own libraries bring this file. */
bool is_of_qt(const QString& path) {
    const QStringList roots = {QStringLiteral(":/qt-project.org/"), QStringLiteral(":/qpdf/"),
                               QStringLiteral(":/qgradient/")};
    return std::any_of(roots.begin(), roots.end(),
                       [&](const QString& root) { return path.startsWith(root); });
}

TEST(resource_tree, holds_the_listed_files_and_nothing_else) {
    QSet<QString> expected = {QStringLiteral(":/qss/white.qss"), QStringLiteral(":/img/tavrok.ico"),
                              QStringLiteral(":/img/logo.jpg"), QStringLiteral(":/qm/qt_zh_CN.qm")};
    for (const auto& name : images())
        expected.insert(image_path(name));
    QSet<QString> found;
    QDirIterator files(QStringLiteral(":/"), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (!is_of_qt(path)) found.insert(path);
    }
    EXPECT_EQ(images().size(), 61);
    for (const auto& path : found - expected)
        ADD_FAILURE() << "not wanted: " << path.toStdString();
    for (const auto& path : expected - found)
        ADD_FAILURE() << "missing: " << path.toStdString();
}

TEST(resource_tree, compresses_style_sheet_and_icon_only) {
    for (const char* path : {":/qss/white.qss", ":/img/tavrok.ico"}) {
        EXPECT_EQ(QResource(QLatin1String(path)).compressionAlgorithm(), QResource::ZlibCompression) << path;
    }
    QStringList plain = {QStringLiteral(":/img/logo.jpg"), QStringLiteral(":/qm/qt_zh_CN.qm")};
    for (const auto& name : images())
        plain.append(image_path(name));
    for (const auto& path : plain) {
        const QResource resource(path);
        EXPECT_TRUE(resource.isValid()) << path.toStdString();
        EXPECT_EQ(resource.compressionAlgorithm(), QResource::NoCompression) << path.toStdString();
    }
}

TEST(resource_tree, carries_the_catalogue_of_the_qt_installation) {
    const QString installed = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    const QByteArray carried = read_file(QStringLiteral(":/qm/qt_zh_CN.qm"));
    EXPECT_FALSE(carried.isEmpty());
    EXPECT_EQ(carried, read_file(installed + QStringLiteral("/qt_zh_CN.qm")));
}

TEST(pictures, banner_is_400_by_90) {
    QImageReader reader(QStringLiteral(":/img/logo.jpg"));
    EXPECT_EQ(reader.format(), QByteArray("jpeg"));
    EXPECT_EQ(reader.read().size(), QSize(400, 90));
}

TEST(pictures, window_icon_has_one_image_of_128_by_128) {
    QImageReader reader(QStringLiteral(":/img/tavrok.ico"));
    EXPECT_EQ(reader.format(), QByteArray("ico"));
    EXPECT_EQ(reader.imageCount(), 1);
    EXPECT_EQ(reader.read().size(), QSize(128, 128));
    const QIcon icon(QStringLiteral(":/img/tavrok.ico"));
    EXPECT_EQ(icon.availableSizes(), QList<QSize>{QSize(128, 128)});
}

TEST(pictures, every_image_is_a_png_that_shows_something) {
    for (const auto& name : images()) {
        EXPECT_EQ(QImageReader(image_path(name)).format(), QByteArray("png")) << name.toStdString();
        const QImage image(image_path(name));
        EXPECT_TRUE(image.width() >= 10 && image.width() <= 48) << name.toStdString();
        EXPECT_TRUE(image.hasAlphaChannel()) << name.toStdString();
        int drawn = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                drawn += qAlpha(image.pixel(x, y)) > 128;
        }
        EXPECT_GT(drawn, 8) << name.toStdString();
    }
}

TEST(pictures, states_of_one_sign_have_one_size_and_different_looks) {
    const QStringList all = images();
    int families = 0;
    for (const auto& name : all) {
        const QImage normal(image_path(name));
        const QImage hover(image_path(name + QStringLiteral("Hover")));
        if (hover.isNull()) continue;
        ++families;
        EXPECT_EQ(hover.size(), normal.size()) << name.toStdString();
        EXPECT_NE(hover, normal) << name.toStdString();
        const QString pressed_name = name + QStringLiteral("Pressed");
        if (!all.contains(pressed_name)) continue;
        const QImage pressed(image_path(pressed_name));
        EXPECT_EQ(pressed.size(), normal.size()) << name.toStdString();
        EXPECT_NE(pressed, normal) << name.toStdString();
        EXPECT_NE(pressed, hover) << name.toStdString();
    }
    EXPECT_EQ(families, 15);
}

TEST(style_sheet, is_14198_bytes_of_ascii) {
    const QByteArray bytes = read_file(QStringLiteral(":/qss/white.qss"));
    EXPECT_EQ(bytes.size(), 14198);
    const auto ascii = [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); };
    EXPECT_TRUE(std::all_of(bytes.begin(), bytes.end(), ascii));
    EXPECT_TRUE(bytes.startsWith("*{font-family:Microsoft YaHei;font-size:14px}"));
}

TEST(style_sheet, names_images_that_exist_without_extension) {
    static const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
    int count = 0;
    auto matches = url.globalMatch(style_sheet());
    while (matches.hasNext()) {
        const QString path = matches.next().captured(1);
        const std::string shown = path.toStdString();
        ++count;
        EXPECT_TRUE(path.startsWith(QLatin1String(":/qss/white/"))) << shown;
        EXPECT_TRUE(images().contains(path.mid(12))) << shown;
        EXPECT_FALSE(QImage(path).isNull()) << shown;
        EXPECT_FALSE(QIcon(path).pixmap(48).isNull()) << shown;
    }
    EXPECT_GT(count, 30);
}

TEST(style_sheet, is_taken_by_qt_without_a_word) {
    const warnings_kept kept;
    const auto dialog = widgets();
    qApp->setStyleSheet(style_sheet());
    dialog->ensurePolished();
    dialog->grab();
    EXPECT_TRUE(g_warnings.isEmpty()) << g_warnings.join(QLatin1Char('\n')).toStdString();
    qApp->setStyleSheet(style_sheet() + QStringLiteral("QLabel {"));
    dialog->grab();
    EXPECT_FALSE(g_warnings.isEmpty()) << "a broken sheet goes unnoticed";
    qApp->setStyleSheet(QString());
}

TEST(style_sheet, gives_buttons_and_fields_their_sizes) {
    qApp->setStyleSheet(style_sheet());
    const QPushButton button(QString::fromUtf8("添加明细"));
    const QLineEdit line;
    const QComboBox box;
    const QSpinBox spin;
    const QDateEdit date;
    EXPECT_EQ(button.sizeHint(), QSize(75, 30));
    const int frame = 2;
    EXPECT_EQ(line.sizeHint().height(), 25 + frame);
    EXPECT_EQ(box.sizeHint().height(), 25 + frame);
    EXPECT_EQ(spin.sizeHint().height(), 24 + frame);
    EXPECT_EQ(date.sizeHint().height(), 25 + frame);
    qApp->setStyleSheet(QString());
}

/** A selector, and text that its rules must hold. */
struct settled {
    const char* selector;
    const char* text;
};

const settled settled_values[] = {
    {"QToolTip", "border: 1px solid rgb(111, 156, 207);"},
    {"QToolTip", "background: #FFFFBF;"},
    {"QToolTip", "color: red;"},
    {"QMenuBar", "background: rgb(187, 212, 238);"},
    {"QMenu::item", "height: 30px; padding: 0 30px;"},
    {"QTabBar::tab", "background: rgb(120, 170, 220); color: white; height: 28px; min-width: 85px;"},
    {"QTabBar::tab", "margin-right: 5px;"},
    {"QTabBar::tab", "border-top-left-radius: 4px; border-top-right-radius: 4px;"},
    {"QTabBar::tab:selected", "background: rgb(0, 78, 161);"},
    {"QTabBar::tab:hover", "background: rgb(0, 78, 161);"},
    {"QTabWidget::pane", "border-top: 3px solid rgb(0, 78, 161);"},
    {"#main_tab::pane", "border: 1px solid rgb(111, 156, 207); border-top: 3px solid rgb(0, 78, 161);"},
    {"#main_tab::pane",
     "border-top-left-radius: 0; border-top-right-radius: 4px; "
     "border-bottom-left-radius: 4px; border-bottom-right-radius: 4px;"},
    {"QHeaderView", "background: transparent;"},
    {"QHeaderView", "border-bottom: 3px solid rgb(0, 78, 161); min-height: 30px;"},
    {"QHeaderView::section:hover", "background: rgb(0, 78, 161); color: white;"},
    {"QTableView", "background: rgb(224, 238, 255); gridline-color: rgb(111, 156, 207);"},
    {"QTableView::item", "background: white;"},
    {"QTableView::item:selected", "background: #a4c2f4;"},
    {"QLineEdit", "height: 25px;"},
    {"QLineEdit", "border-radius: 4px;"},
    {"QLineEdit", "background: white;"},
    {"QLineEdit:disabled", "background: #D2D2D3;"},
    {"QLineEdit[readOnly=\"true\"]", "background: #F0F0F0;"},
    {"QComboBox", "height: 25px;"},
    {"QComboBox", "border-radius: 4px;"},
    {"QComboBox", "background: white;"},
    {"QSpinBox", "height: 24px;"},
    {"QSpinBox", "border-radius: 4px;"},
    {"QSpinBox", "background: white;"},
    {".QDateEdit", "height: 25px;"},
    {".QDateEdit", "border-radius: 4px;"},
    {".QDateEdit", "background: white;"},
    {".QPushButton", "width: 75px; height: 30px; border: none; border-radius: 4px;"},
    {".QPushButton", "background: rgb(120, 170, 220); color: white;"},
    {".QPushButton:hover", "background: rgb(100, 160, 220);"},
    {".QPushButton:pressed", "background: rgb(0, 78, 161);"},
    {".QPushButton:disabled", "background: rgb(180, 180, 180);"},
    {".QTreeWidget", "padding: 10px;"},
    {".QTreeView", "background: #bbd4ee; color: #004EA1; font-size: 15px; font-weight: bold;"},
    {".QTreeWidget::item", "height: 28px;"},
    {".QTreeView::item", "height: 28px;"},
    {".QLabel", "font-size: 14px; color: #004EA1;"},
    {"QCheckBox::indicator:checked", "image: url(:/qss/white/checkBoxChecked);"},
    {"QRadioButton::indicator:checked", "image: url(:/qss/white/radioButtonChecked);"},
    {"QScrollBar::handle", "background: rgb(120, 170, 220);"},
    {"QGroupBox", "border: 1px solid rgb(111, 156, 207);"},
    {"QProgressBar", "url(:/qss/white/progressBar)"},
    {"QProgressBar::chunk", "url(:/qss/white/progressBarChunk)"},
    {"QStatusBar", "background: rgb(187, 212, 238);"},
};

TEST(style_sheet, holds_every_settled_value) {
    for (const auto& [selector, text] : settled_values) {
        const QString rules = rules_of(QLatin1String(selector));
        EXPECT_TRUE(rules.contains(QLatin1String(text))) << selector << " {" << rules.toStdString() << "}\n"
                                                         << text;
    }
    EXPECT_TRUE(bare_style_sheet().contains(QLatin1String(".QTreeWidget,.QTreeView {")));
    EXPECT_TRUE(
        rules_of(QStringLiteral("QGroupBox::title")).endsWith(QLatin1String("font: italic bold 18px;")))
        << "the last word on group titles";
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    init_resources();
    return RUN_ALL_TESTS();
}
