#pragma once

#include "text/textchange.h"
#include "text/textstore.h"

#include <QAccessibleWidget>

#include <optional>

class QMultiLineEdit;

/// A QMultiLineEdit as assistive technology sees it: one text that can be read, selected and edited by
/// offsets.
///
/// Offsets are UTF-16 units of the text. The interface counts in int: text beyond the largest int exists for
/// the editor but not here. Nothing reads the whole text unless it is asked for as a whole: a word, sentence,
/// row or line costs its own length, and is cut to longestUnit units around the place it was asked at.
class TextAccessible : public QAccessibleWidget,
                       public QAccessibleTextInterface,
                       public QAccessibleEditableTextInterface {
public:
    /// The most units of a word, sentence, row, line or announcement.
    static constexpr qint64 longestUnit = qint64(64) << 10;
    /// The most units that are given at once: what is sent must fit into one message of the bus.
    static constexpr qint64 longestText = qint64(16) << 20;

    /// Makes these interfaces from now on, each when it is first asked for.
    static void install();

    explicit TextAccessible(QMultiLineEdit *edit);

    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    int characterCount() const override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    int selectionCount() const override;
    void selection(int index, int *start, int *end) const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;

    using QAccessibleWidget::text;
    QString text(int start, int end) const override;
    /// The unit of text that holds `offset`, or the one before or behind that. -1: the end of the text; -2:
    /// the cursor. Null, with -1 in both places, where there is none.
    QString textAtOffset(
        int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const override;
    QString textBeforeOffset(
        int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const override;
    QString textAfterOffset(
        int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const override;
    QString attributes(int offset, int *start, int *end) const override;

    /// In screen coordinates; -1 for a point outside the view.
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int start, int end) override;

    /// Each is one step of the undo history. These, the cursor and the selection stay as they are while
    /// QPEApplication::isBusy().
    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

private:
    QMultiLineEdit *edit() const;
    const TextStore &store() const;
    /// A place of the text for an offset from outside.
    Offset place(int offset) const;
    TextRange wholeUnit(Offset offset, QAccessible::TextBoundaryType boundary) const;
    TextRange unit(Offset offset, QAccessible::TextBoundaryType boundary) const;
    TextRange sentence(Offset offset) const;
    QString give(std::optional<TextRange> unit, int *start, int *end) const;
};
