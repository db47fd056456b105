#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "codec/textcodec.h"
#include "document/documentversion.h"
#include "editor/rownumberfont.h"
#include "text/textpattern.h"
#include "widget/qmultilineedit.h"

#include <QColor>

#include <memory>

/// Which way a block of lines moves.
enum class Indentation { In, Out };

/// The editing control of one open document: its text, name, codes, marks and colours.
///
/// It reads the settings record when it is made and whenever one of the apply functions is called; the
/// settings of marks, tab width and auto indent at every use. Values outside their range count as the nearest
/// sensible one and stay as they are in the record.
class ctlEditer : public QMultiLineEdit {
    Q_OBJECT
public:
    /// An empty "(new document)", as large as `parent` until a layout says otherwise.
    explicit ctlEditer(QWidget *parent);

    /// Folder, ending in "/"; empty for a document never saved.
    QString path() const { return m_path; }
    QString name() const { return m_name; }
    int charCode() const { return int(m_charCode); }
    int returnCode() const { return int(m_returnCode); }
    QString charCodeName() const;
    QString returnCodeName() const;
    bool undoAvailable() const { return m_undoAvailable; }
    bool redoAvailable() const { return m_redoAvailable; }
    QColor backColor() const { return m_backColor; }
    QColor foreColor() const { return m_foreColor; }
    QColor rowNoColor() const { return m_rowNoColor; }
    QColor activeLineColor() const { return m_activeLineColor; }

    /// Reads path + name; `requested` is a CharCode, 0 to detect. False after telling the user: text, codes,
    /// history, cursor and view stay then, but path and name are the new ones, and saving under them keeps a
    /// copy of what could not be read. Memory: the file's bytes and the text.
    bool loadFile(const QString &path, const QString &name, int requested);
    /// As loadFile, always detecting.
    bool reload(const QString &path, const QString &name);
    /// Writes the text as path + name; 0 keeps the document's own code or line end. False after telling the
    /// user: the file is as it was then, text, name and history too, but the codes given are kept. What the
    /// file had is kept, and the user told where, when another document of the program has written it since.
    bool saveFile(const QString &path, const QString &name, int charCode = 0, int returnCode = 0);

    /// Names a document that was never saved in the present language.
    void retranslateName();

    /// Marks the first hit behind the cursor or, where text is marked, behind that text's first character; in
    /// mode 1 replaces it. False, with cursor and marked text as they were, when there is none.
    bool searchForward(int mode, bool caseSensitive, const QString &findText, const QString &replaceText);
    /// The same for the last hit before the cursor or the marked text, where the cursor then stands.
    bool searchBackward(int mode, bool caseSensitive, const QString &findText, const QString &replaceText);
    /// Puts the cursor at the start of a logical line, counted from 1; nothing for a line there is not.
    void jumpToLine(qint64 number);
    /// Puts the cursor where the newest insertion or deletion that can be undone began; nothing without one.
    void jumpToLastEdit();

    /// All of the following; the cursor stays on its text, the line at the top of the view stays there, and
    /// the document does not count as modified by it.
    void applySettings();
    void applyFont();
    /// Mode 1 wraps at the width the editor has now and goes on doing so whatever its width becomes.
    void applyWrapMode();
    void applyRowNoMargin();
    void applyActiveLineColor();
    void applyColors();

    /// The colour of an index 1..17; white for any other.
    static QColor colorOfIndex(int index);

public slots:
    /// Copies the selection and removes it: nothing stays marked.
    void copy() override;
    void slotEdUndoAvailable(bool available);
    void slotEdRedoAvailable(bool available);

signals:
    /// undoAvailable() and redoAvailable(), with the editor that sends them.
    void undoAvailable2(ctlEditer *editor, bool available);
    void redoAvailable2(ctlEditer *editor, bool available);
    /// Right before a message box about saving this document: who reads it wants to see the document.
    void aboutToTell();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    CellLook cellLook(const RowLayout &row) const override;
    CursorLook cursorLook() const override;
    /// Row numbers, signs, and the line below the cursor's row.
    void drawUnderText(RowPainter &row) const override;
    void drawOverText(RowPainter &row) const override;
    void drawOverCursor(RowPainter &row, const QRectF &cell) const override;

private:
    QString rowNumber(qint64 row) const;
    QColor cursorColor() const;

    int fixedWrapWidth() const;
    void setDecodedText(QByteArray &&bytes);
    void setReadWith(const TextCodec *codec);
    void setReadWithOwnCode();
    void setWrittenWith(const TextCodec *codec);
    TextCodec::AsRead writtenAsRead(const TextCodec *codec) const;
    bool writeText(const QString &fileName);
    void setUnmodified();

    CursorPlace markedBegin() const;
    const TextPattern &patternFor(const QString &text, bool caseSensitive);

    void breakLine();
    QString indentationBeforeCursor() const;
    bool marksSeveralLines() const;
    void indentBlock(Indentation direction);
    TextPiece indented(qint64 begin, qint64 end, Indentation direction) const;
    void pressOtherKey(QKeyEvent *event);

    QString m_path;
    QString m_name;
    QString m_unreadFile; ///< path + name of the file that could not be read; empty when the text is its own
    DocumentVersion m_version;
    CharCode m_charCode = CharCode::Binary;
    ReturnCode m_returnCode = ReturnCode::None;
    const TextCodec *m_readWith = nullptr; ///< which the undecodable bytes and spellings in the text are of
    bool m_keepsSpellings = true; ///< until the text was saved in another code
    TextPattern m_pattern; ///< of the last search
    bool m_undoAvailable = false;
    bool m_redoAvailable = false;
    QColor m_backColor;
    QColor m_foreColor;
    QColor m_rowNoColor;
    mutable RowNumberFont m_rowNumberFont; ///< kept: to look a font up takes longer than to draw a number
    QColor m_activeLineColor;
};
