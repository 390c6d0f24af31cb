// The link alone over a kernel's own USB stack; without a toolkit, so that a sanitizer is not too slow for it.

#include "OneLinePerCase.h"

int main(int argc, char** argv) {
    return kelvo::test::runOneLinePerCase(argc, argv);
}
