#include "fuzz/quiet_messages.h"

#include <QCoreApplication>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QCoreApplication application(*argc, *argv);
    quietMessages();
    return 0;
}
