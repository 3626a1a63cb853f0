#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("KIGUMI_TEST", "1");
    // Settings and copies of this run alone; a program that a test starts has those of the test.
    const QTemporaryDir home;
    if (qEnvironmentVariableIsEmpty("KIGUMI_TEST_HOME")) {
        qputenv("KIGUMI_TEST_HOME", home.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
        qputenv("XDG_DATA_HOME", (home.path() + "/data").toUtf8());
    }
    const QApplication app(argc, argv);
    QApplication::setApplicationName("kigumi");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
