#pragma once

#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>

#include <memory>

class QSvgRenderer;

/// One picture of the program: a drawing, sharp at every size, or an image.
class Picture {
public:
    /// The picture of this name, from qpeDir()/pics or built in; a null one where the name is unknown or the
    /// file is broken. Read once and kept until the end.
    static const Picture &named(const QString &name);

    explicit Picture(const QString &fileName);
    ~Picture();
    Picture(const Picture &) = delete;
    Picture &operator=(const Picture &) = delete;

    bool isNull() const { return m_size.isEmpty(); }
    /// Pixels at scale 1.
    QSize size() const { return m_size; }
    /// As large as fits into so many device pixels, its proportions kept. Device pixel ratio 1.
    QPixmap render(QSize devicePixels) const;

private:
    std::unique_ptr<QSvgRenderer> m_drawing;
    QImage m_image;
    QSize m_size;
};
