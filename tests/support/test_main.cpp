#include <gtest/gtest.h>

#include <QApplication>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

/** The models of page bars are never deleted: that is how the bar is meant to be. */
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:make_page_model\nleak:libfontconfig\n";
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
#ifdef __SANITIZE_ADDRESS__
    // While the application lives: the platform plug-in loses its own screens when it is unloaded.
    __lsan_do_leak_check();
#endif
    return result;
}
