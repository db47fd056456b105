#pragma once

#include <QMenuBar>

/// A menu bar that stands inside a tool bar: it shows the tool bar's background, where a style would paint
/// the panel and the edge of a bar of its own.
class FlatMenuBar : public QMenuBar {
    Q_OBJECT
public:
    explicit FlatMenuBar(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
