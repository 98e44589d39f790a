#include <QApplication>

#include <gmock/gmock.h>

#include <clocale>

/// Runs the tests with an application object, on whatever display the environment names.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    QApplication application(argc, argv);
    // As `main` of the program does: numbers in files know one decimal point only.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
