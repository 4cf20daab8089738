#include "app/TarvioApplication.h"
#include "app/TarvioWindow.h"
#include "ecu/qt_compatibility.h"
#include "orv_decoder/metatypes.h"

#include <QtGlobal>

namespace {

// Nothing here draws with OpenGL. Its driver would be loaded all the same on X11, for a fifth of
// the start and half of the memory.
void leaveOutOpenGl()
{
    constexpr auto kChoice = "QT_XCB_GL_INTEGRATION";
    if (!qEnvironmentVariableIsSet(kChoice))
        qputenv(kChoice, "none");
}

} // namespace

int main(int argc, char* argv[])
{
    leaveOutOpenGl();
    qt_compatibility::followScreenScale();
    TarvioApplication application(argc, argv);
    return application.run([] {
        orv::registerMetaTypes();
        TarvioWindow window;
        window.show();
        return QApplication::exec();
    });
}
