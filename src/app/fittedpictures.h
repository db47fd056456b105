#pragma once

#include <QAbstractTextDocumentLayout>
#include <QTextEdit>

#ifdef Q_MOC_RUN // which does not read the toolkit's headers here
Q_DECLARE_INTERFACE(QTextObjectInterface, "org.qt-project.Qt.QTextObjectInterface")
#endif

/// The pictures of a text: pixel by pixel on the screen, or scaled down to the width of the text, or of a
/// column, where that is less. They are fitted whenever the text is laid out, and kept scaled, so that
/// scrolling paints alone.
class FittedPictures : public QObject, public QTextObjectInterface {
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)
public:
    /// Of the document that `view` has, for as long as it has that. The view owns it.
    explicit FittedPictures(QTextEdit *view);

    /// Nothing where the picture is missing.
    QSizeF intrinsicSize(QTextDocument *text, int position, const QTextFormat &format) override;
    void drawObject(QPainter *painter, const QRectF &place, QTextDocument *text, int position,
        const QTextFormat &format) override;

private:
    const QTextEdit &m_view;
};
