#include <QGuiApplication>

#include <gtest/gtest.h>

// The tests look at the screen of the X server they run on, so they need a GUI application object of
// their own (on that display) besides the program they start.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return RUN_ALL_TESTS(); // each test skips itself
    QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
