// The least that a window of this toolkit can be: what is lighter, the toolkit would have to become.

#include <QGuiApplication>
#include <QQuickView>
#include <QQuickWindow>
#include <QSGRendererInterface>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickView view(QUrl(QStringLiteral("qrc:/bench/BareWindow.qml")));
    view.show();
    return QGuiApplication::exec();
}
