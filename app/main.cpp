#include "app/TarvioApplication.h"
#include "app/TarvioWindow.h"
#include "orv_decoder/metatypes.h"

int main(int argc, char* argv[])
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    TarvioApplication application(argc, argv);
    return application.run([] {
        orv::registerMetaTypes();
        TarvioWindow window;
        window.show();
        return QApplication::exec();
    });
}
