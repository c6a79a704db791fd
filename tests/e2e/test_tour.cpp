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
        const bool finished = program.waitForFinished(120000);
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
    EXPECT_GE(files.size(), 70);
}

TEST_F(tour_run, fails_with_the_name_of_the_step) {
    serve();
    service->change_database("DELETE FROM partner");
    EXPECT_EQ(tour({service->base_url(), pictures.path()}), 1);
    EXPECT_TRUE(said.contains("supplier_list")) << said.data();
}

TEST_F(tour_run, wants_two_arguments) {
    EXPECT_EQ(tour({}), 2);
}
