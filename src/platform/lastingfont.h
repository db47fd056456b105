#pragma once

#include <QFont>
#include <QObject>

/// The application's font, which stays while this lives: a platform theme may set fonts of its own at any
/// time, for everything or for some kinds of widgets, and they are taken back at once.
class LastingFont : public QObject {
    Q_OBJECT
public:
    explicit LastingFont(const QFont &font, QObject *parent = nullptr);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void install();

    QFont m_font;
    bool m_isInstalling = false;
};
