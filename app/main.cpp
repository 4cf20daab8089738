#include "app/TarvioWindow.h"
#include "orv_decoder/metatypes.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    orv::registerMetaTypes();
    TarvioWindow window;
    window.show();
    return QApplication::exec();
}
