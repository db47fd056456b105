#include <QApplication>
#include <QMainWindow>
#include <QPlainTextEdit>

/// What a start is compared with: the least program that shows the toolkit's own text widget in a window.
int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("bare window"));
    window.setCentralWidget(new QPlainTextEdit);
    window.showMaximized();
    return application.exec();
}
