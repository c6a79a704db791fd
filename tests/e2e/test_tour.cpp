#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include "e2e/e2e_fixture.h"
#include "support/screen.h"

namespace {

class tour_run : public e2e_test {
protected:
    /** Exit code of the tour; everything that it prints goes to `said`. */
    int tour(const QStringList& arguments) {
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(WMS_TOUR), arguments);
        const bool finished = program.waitForFinished(240000);
        said = program.readAll();
        if (finished) return program.exitCode();
        program.kill();
        program.waitForFinished();
        return -1;
    }

    QTemporaryDir pictures;
    QByteArray said;
};

} // namespace

TEST_F(tour_run, shows_every_screen) {
    serve();
    EXPECT_EQ(tour({service->base_url(), pictures.path()}), 0) << said.data();
    const QStringList files = QDir(pictures.path()).entryList({QStringLiteral("*.png")});
    EXPECT_GE(files.size(), 185);
    const QStringList prints = QDir(pictures.path()).entryList({QStringLiteral("*.pdf")});
    EXPECT_EQ(prints.size(), 12);
}

TEST_F(tour_run, fails_with_the_name_of_the_step) {
    serve();
    service->change_database("DELETE FROM partner");
    EXPECT_EQ(tour({service->base_url(), pictures.path()}), 1);
    EXPECT_TRUE(said.contains("supplier_list")) << said.data();
}

TEST_F(tour_run, wants_two_arguments_and_takes_a_size) {
    EXPECT_EQ(tour({}), 2);
    const QString nowhere = QStringLiteral("https://127.0.0.1:1/");
    for (const char* size : {"", "1920", "1920x", "x1080", "0x0", "1920x1080x1"})
        EXPECT_EQ(tour({nowhere, pictures.path(), QLatin1String(size)}), 2) << size;
    EXPECT_EQ(tour({nowhere, pictures.path(), QStringLiteral("1920x1080"), QString()}), 2);
}
