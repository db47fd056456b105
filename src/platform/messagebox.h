#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// Message boxes of fixed title and text. Texts are shown as they are: a file name in one is never taken for
/// mark-up. Each call runs the box modally and returns when it was answered. What was meant for the window
/// before it does not answer it (StrayInput): presses within the time of a double click, keys that are held.
namespace MessageBox {

/// An error, with one button.
void critical(QWidget *parent, const QString &title, const QString &text);
/// A result, with one button.
void information(QWidget *parent, const QString &title, const QString &text);
/// About the program, with the window's icon and one button.
void about(QWidget *parent, const QString &title, const QString &text);

constexpr int noEscape = -1;
/// A question with `buttons` in this order; gives the index of the one that was pressed. Return presses
/// `defaultButton`; Escape and closing the box press `escapeButton`, or do nothing with noEscape. A box that
/// the end of the program takes away gives `escapeButton` too.
int question(QWidget *parent, const QString &title, const QString &text, const QStringList &buttons,
    int defaultButton, int escapeButton);

} // namespace MessageBox
