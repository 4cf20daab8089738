#include "fuzz/quiet_messages.h"

#include <QApplication>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(*argc, *argv);
    quietMessages();
    return 0;
}
