#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWheelEvent>

#include "gui/tree_fixture.h"
#include "master/dlg_prodcate.h"

class prodcate_dialog : public tree_test {
protected:
    void open(int mode) {
        grant("prodcate", {"search"});
        open_with_rights_as_they_are(mode);
    }
    void open_with_rights_as_they_are(int mode) {
        show(std::make_unique<dlg_prodcate>(nullptr, mode));
        chosen =
            std::make_unique<QSignalSpy>(dialog.get(), SIGNAL(signal_prodcate_selected(struct_prodcate)));
    }
    void expect_chosen(const char* id, const QString& name) {
        ASSERT_EQ(chosen->size(), 1);
        const auto prodcate = chosen->first().first().value<struct_prodcate>();
        EXPECT_EQ(prodcate.id, QLatin1String(id));
        EXPECT_EQ(prodcate.name, name);
        EXPECT_TRUE(prodcate.parent.isEmpty());
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Rejected)) << "a choice ends as a rejection does";
    }

    std::unique_ptr<QSignalSpy> chosen;
};

TEST_F(prodcate_dialog, window) {
    open(3);
    EXPECT_EQ(dialog->size(), QSize(500, 800));
    EXPECT_LT(dialog->minimumHeight(), 800);
    auto* ok = child<QPushButton>(dialog.get(), "btn_ok");
    EXPECT_EQ(ok->text(), QStringLiteral("关闭"));
    EXPECT_EQ(ok->minimumHeight(), 30);
    EXPECT_GT(ok->y(), tree->geometry().bottom());
    EXPECT_EQ(tab_order(tree, 2), (QStringList{QStringLiteral("treeview"), QStringLiteral("btn_ok")}));
}

struct mode_row {
    int mode;
    const char* root;
    const char* tip;
    bool button;
    bool expands;
    bool chooses;
};
class prodcate_mode : public prodcate_dialog, public testing::WithParamInterface<mode_row> {};

TEST_P(prodcate_mode, decides_look_and_double_click) {
    const mode_row& row = GetParam();
    open(row.mode);
    EXPECT_EQ(tree_lines(tree).first(), QStringLiteral("0 %1/0/").arg(QString::fromUtf8(row.root)));
    EXPECT_EQ(tree->toolTip(), QString::fromUtf8(row.tip));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_ok")->isVisible(), row.button);
    EXPECT_EQ(tree->expandsOnDoubleClick(), row.expands);
    EXPECT_TRUE(tree->isExpanded(tree_node_named(tree, QStringLiteral("甲"))));
    double_click_node(tree, QStringLiteral("甲"));
    EXPECT_EQ(tree->isExpanded(tree_node_named(tree, QStringLiteral("甲"))), !row.expands);
    EXPECT_EQ(chosen->size(), row.chooses ? 1 : 0);
    EXPECT_EQ(dialog->isVisible(), !row.chooses);
}

INSTANTIATE_TEST_SUITE_P(modes, prodcate_mode,
                         testing::Values(mode_row{1, "【货品分类】", "右键操作", false, false, false},
                                         mode_row{3, "【货品分类】", "双击选择", true, true, true},
                                         mode_row{4, "【全部】", "双击选择", true, true, true},
                                         mode_row{2, "", "", true, true, false}));

TEST_F(prodcate_dialog, a_tree_taller_than_the_dialog_has_no_scroll_bars) {
    QByteArray many = "[{\"id\":\"1\",\"name\":\"" + QByteArray(400, 'w') + "\"}";
    for (int id = 2; id < 100; ++id)
        many += ",{\"id\":\"" + QByteArray::number(id) + "\",\"name\":\"" + QByteArray::number(id) + "\"}";
    server.always("wms_prodcate/get_prodcate", many + "]");
    open(1);
    EXPECT_EQ(tree->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(tree->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_FALSE(tree->verticalScrollBar()->isVisible());
    EXPECT_FALSE(tree->horizontalScrollBar()->isVisible());
    ASSERT_GT(tree->verticalScrollBar()->maximum(), 0);
    make_current(QStringLiteral("2"));
    QTest::keyClick(tree, Qt::Key_End);
    EXPECT_EQ(tree->currentIndex().data().toString(), QStringLiteral("99"));
    EXPECT_TRUE(tree->viewport()->rect().intersects(tree->visualRect(tree->currentIndex())))
        << "the keyboard reaches what no bar does";
    const int lowest = tree->verticalScrollBar()->value();
    const QPointF at = tree->viewport()->rect().center();
    QWheelEvent up(at, tree->viewport()->mapToGlobal(at.toPoint()), QPoint(), QPoint(0, 1200), Qt::NoButton,
                   Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(tree->viewport(), &up);
    EXPECT_LT(tree->verticalScrollBar()->value(), lowest) << "and so does the wheel";
}

TEST_F(prodcate_dialog, without_the_search_right_every_mode_is_grey_and_empty) {
    grant("prodcate", {"add_child", "edit", "delete"});
    for (int mode : {1, 3, 4}) {
        open_with_rights_as_they_are(mode);
        EXPECT_FALSE(dialog->isEnabled()) << mode;
        EXPECT_TRUE(tree_lines(tree).isEmpty()) << mode;
    }
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(prodcate_dialog, a_choice_carries_name_and_id_and_ends_in_a_rejection) {
    for (int mode : {3, 4}) {
        open(mode);
        double_click_node(tree, QStringLiteral("丙"));
        expect_chosen("3", QStringLiteral("丙"));
    }
}

TEST_F(prodcate_dialog, the_root_is_a_choice_in_both_pickers) {
    open(3);
    double_click_node(tree, QStringLiteral("【货品分类】"));
    expect_chosen("0", QStringLiteral("【货品分类】"));
    open(4);
    double_click_node(tree, QStringLiteral("【全部】"));
    expect_chosen("0", QStringLiteral("【全部】"));
}

TEST_F(prodcate_dialog, an_empty_id_is_warned_about_when_a_category_is_assigned) {
    server.always("wms_prodcate/get_prodcate", R"([{"id":9,"name":"x"}])");
    open(3);
    click_node(tree, QStringLiteral("x"));
    with_modal_of<QMessageBox>([this] { double_click_node(tree, QStringLiteral("x")); },
                               [](QMessageBox* box) {
                                   EXPECT_EQ(box->windowTitle(), QStringLiteral("提示"));
                                   EXPECT_EQ(box->text(), QStringLiteral("请选择货品分类以下类别"));
                                   EXPECT_EQ(box->icon(), QMessageBox::Warning);
                                   EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
                                   box->button(QMessageBox::Ok)->click();
                               });
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(chosen->size(), 0);
}

TEST_F(prodcate_dialog, an_empty_id_is_a_choice_of_the_filter) {
    open(4);
    tree->setCurrentIndex(QModelIndex());
    static_cast<dlg_prodcate*>(dialog.get())->slot_prodcate_selected();
    expect_chosen("", QString());
}

TEST_F(prodcate_dialog, the_button_accepts_without_a_choice) {
    open(3);
    make_current(QStringLiteral("丁"));
    click(dialog.get(), "btn_ok");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    EXPECT_EQ(chosen->size(), 0);
}

TEST_F(prodcate_dialog, an_edit_hands_over_the_whole_node) {
    open(1);
    QSignalSpy to_edit(dialog.get(), SIGNAL(signal_prodcate_to_edit(struct_prodcate)));
    make_current(QStringLiteral("乙"));
    with_modal([this] { static_cast<dlg_prodcate*>(dialog.get())->slot_prodcate_to_edit(); },
               [](QWidget* d) { d->close(); });
    ASSERT_EQ(to_edit.size(), 1);
    const auto prodcate = to_edit.first().first().value<struct_prodcate>();
    EXPECT_EQ(prodcate.id, QStringLiteral("2"));
    EXPECT_EQ(prodcate.name, QStringLiteral("乙"));
    EXPECT_EQ(prodcate.parent, QStringLiteral("1"));
}
