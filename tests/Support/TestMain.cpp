#include <QApplication>
#include <QCoreApplication>
#include <QLocale>

#include <gmock/gmock.h>

#include <clocale>
#include <locale>
#include <memory>

#ifdef __SANITIZE_ADDRESS__
// The OpenGL driver is unloaded before leaks are searched for. What it keeps in its own variables
// would then count as lost, in a library without a name that tools/lsan.supp could tell.
extern "C" __attribute__((visibility("default"))) int dlclose(void *)
{
    return 0;
}
#endif

int main(int argc, char *argv[])
{
    // Numbers and messages must not depend on who runs the tests, nor on how.
    std::locale::global(std::locale::classic());
    QLocale::setDefault(QLocale::c());
    testing::InitGoogleMock(&argc, argv);

    // Suites that need a display are started with one; the others must do without.
    std::unique_ptr<QCoreApplication> application;
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        application = std::make_unique<QCoreApplication>(argc, argv);
    } else {
        application = std::make_unique<QApplication>(argc, argv);
    }
    // The application has just taken the locale of the environment. UTF-8, as file names are.
    std::setlocale(LC_ALL, "C.UTF-8");
    return RUN_ALL_TESTS();
}
