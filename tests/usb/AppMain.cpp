// The utility's controller over a kernel's own USB stack.

#include <QApplication>

#include "OneLinePerCase.h"

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    return kelvo::test::runOneLinePerCase(argc, argv);
}
