#include "HidrawManager.h"
#include "NSApplicationMain.h"

int main(int argc, char** argv) {
    kelvo::HidrawManager manager;
    return kelvo::NSApplicationMain(argc, argv, manager);
}
