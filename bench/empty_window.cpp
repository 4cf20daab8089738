#include <QApplication>
#include <QMainWindow>

// The least that a program with a main window of Qt can be, as large as Tarvio's opens.
int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1074, 707);
    window.show();
    return QApplication::exec();
}
