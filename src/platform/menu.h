#pragma once

#include <QMenu>

/// A menu that stays on the screen. It scrolls where it would be higher. Its items have room for their texts
/// as they are drawn, but none is wider than the screen: a text that would be is drawn as shortenedPath() has
/// it, and stays whole as the text of its action.
class Menu : public QMenu {
public:
    explicit Menu(QWidget *parent = nullptr);

    /// The text of an item that shows a name unchanged: "&" as itself, and no tab, which would start the text
    /// of keys.
    static QString textFor(const QString &name);
};
