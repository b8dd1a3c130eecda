// Test entry: one application object for the whole run, without a display.
#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    // A run that photographs windows (VONNEL_SCREENS) keeps its display.
    if (qEnvironmentVariableIsEmpty("VONNEL_SCREENS"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
