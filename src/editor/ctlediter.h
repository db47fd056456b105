#pragma once

#include "document/textdocument.h"
#include "editor/editorsearch.h"
#include "editor/indentation.h"
#include "editor/rownumberfont.h"
#include "widget/availability.h"
#include "widget/qmultilineedit.h"

#include <QColor>

#include <functional>
#include <memory>

/// The editing control of one open document: shows it, with the signs and colours of the settings, and asks
/// and tells the user. What the document is, and what can be undone, the document knows.
///
/// It reads the settings record when it is made and whenever one of the apply functions is called; the
/// settings of signs, tab width and auto indent at every use. Values outside their range count as the nearest
/// sensible one and stay as they are in the record.
class ctlEditer : public QMultiLineEdit {
    Q_OBJECT
public:
    /// An empty "(new document)", as large as `parent` until a layout says otherwise.
    explicit ctlEditer(QWidget *parent);

    /// Folder, ending in "/"; empty for a document never saved.
    QString path() const { return document().path(); }
    /// That of its file or, where it was never saved and has none, a name in the present language.
    QString name() const;
    static QString nameOfUnnamed();
    int charCode() const { return int(document().charCode()); }
    int returnCode() const { return int(document().returnCode()); }
    QString charCodeName() const;
    QString returnCodeName() const;
    /// What the signals of these names have said last.
    bool undoAvailable() const { return announced().undo; }
    bool redoAvailable() const { return announced().redo; }
    QColor backColor() const { return m_backColor; }
    QColor foreColor() const { return m_foreColor; }
    QColor rowNoColor() const { return m_rowNoColor; }
    QColor activeLineColor() const { return m_activeLineColor; }

    /// Reads path + name; `requested` is a CharCode, 0 to detect. False after telling the user: text, codes,
    /// history, cursor and view stay then, but path and name are the new ones, and saving under them keeps a
    /// copy of what could not be read. Memory: the file's bytes and the text.
    bool loadFile(const QString &path, const QString &name, int requested);
    bool loadFile(const QString &path, const QString &name, std::optional<CharCode> requested);
    /// As loadFile, as UTF-16; see TextDocument.
    bool loadUtf16(const QString &path, const QString &name, Utf16Form form);
    /// Shows an empty document of a file that is not there yet; without a code it has that of new documents.
    void startFile(const QString &path, const QString &name, std::optional<CharCode> charCode);
    /// As loadFile, always detecting.
    bool reload(const QString &path, const QString &name);
    /// Writes the text as path + name; 0 keeps the document's own code or line end. False after telling the
    /// user: the file is as it was then, text, name and history too, but the codes given are kept. What the
    /// file had is kept, and the user told where, when another document of the program has written it since.
    bool saveFile(const QString &path, const QString &name, int charCode = 0, int returnCode = 0);
    bool saveFile(const QString &path, const QString &name, std::optional<CharCode> charCode,
        std::optional<ReturnCode> returnCode);

    /// Tells what saveFile() would, of a save that was made behind the window.
    void noteSaved(const SaveResult &result);
    /// Shows what a file that has only grown has got, see TextDocument::readGrowth(). A view at the end of
    /// the text stays at its end, as does a cursor there; else both stay where they are.
    GrowthResult readGrowth();

    /// Selects the first hit behind the cursor or, where text is selected, behind the first character of
    /// that; in mode 1 replaces it. False, with cursor and selection as they were, when there is none.
    bool searchForward(int mode, bool caseSensitive, const QString &findText, const QString &replaceText);
    /// The same for the last hit before the cursor or the selection, where the cursor then stands.
    bool searchBackward(int mode, bool caseSensitive, const QString &findText, const QString &replaceText);
    /// Puts the cursor at the start of a logical line, counted from 1; nothing for a line there is not.
    void jumpToLine(qint64 number);
    /// Puts the cursor before a character of a logical line, both counted from 1 and at most the last there
    /// is.
    void jumpTo(qint64 line, qint64 column);
    /// Puts the cursor where the newest insertion or deletion that can be undone began; nothing without one.
    void jumpToLastEdit();

    /// All of the following; the cursor stays on its text, the text at the top of the view stays there, and
    /// the document does not count as edited by it.
    void applySettings();
    void applyFont();
    /// Mode 1 wraps at the width the editor has now and goes on doing so whatever its width becomes.
    void applyWrapMode();
    void applyRowNoMargin();
    void applyActiveLineColor();
    void applyColors();

    /// Moves a block of whole rows in the place of the editor, or says that the editor shall: see
    /// takeBlock().
    using BlockIndenter = std::function<bool(TextRange lines, Indentation direction)>;
    void setBlockIndenter(BlockIndenter indenter) { m_indentBlock = std::move(indenter); }
    /// Puts what has become of a block in its place and selects it, so that it can be moved further.
    void takeBlock(TextRange lines, const TextPiece &block);

    /// The colour of an index 1..17; white for any other.
    static QColor colorOfIndex(int index);

public slots:
    /// Copies the selection and removes it: nothing stays selected.
    void copy() override;
    /// Store what a signal says and say it with the editor: undoAvailable2(), redoAvailable2().
    void slotEdUndoAvailable(bool available);
    void slotEdRedoAvailable(bool available);

signals:
    /// As undoAvailable() and redoAvailable(), with the editor that sends them.
    void undoAvailable2(ctlEditer *editor, bool available);
    void redoAvailable2(ctlEditer *editor, bool available);
    /// What the file had before a save was kept: it was wanted so, or another program had written it since.
    void fileKept(const QString &copy);
    /// Right before a message box about saving this document: who reads it wants to see the document.
    void aboutToTell();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    CellLook cellLook(const RowLayout &row) const override;
    CursorLook cursorLook() const override;
    /// Row numbers, signs, and the underline of the cursor's row.
    void drawUnderText(RowPainter &row) const override;
    void drawOverText(RowPainter &row) const override;
    void drawOverCursor(RowPainter &row, const QRectF &cell) const override;

private:
    QString rowNumber(RowIndex row) const;
    QColor cursorColor() const;

    int fixedWrapWidth() const;
    /// Of a file that does not tell.
    static FileCodes defaultCodes();
    void tellSaved(const SaveResult &result);

    bool search(SearchDirection direction, int mode, bool caseSensitive, const QString &findText,
        const QString &replaceText);
    void breakLine();
    QString indentationBeforeCursor() const;
    bool selectsSeveralLines() const;
    void indentBlock(Indentation direction);
    void pressOtherKey(QKeyEvent *event);

    EditorSearch m_search{ *this };
    QColor m_backColor;
    QColor m_foreColor;
    QColor m_rowNoColor;
    mutable RowNumberFont m_rowNumberFont; ///< kept: to look a font up takes longer than to draw a number
    QColor m_activeLineColor;
    BlockIndenter m_indentBlock = [](TextRange, Indentation) { return false; };
};
