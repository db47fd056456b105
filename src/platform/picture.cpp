#include "platform/picture.h"

#include "platform/qpeapplication.h"

#include <QFileInfo>
#include <QPainter>
#include <QSvgRenderer>

#include <unordered_map>

// The macro declares a function of the global namespace.
static void useBuiltInPictures()
{
    Q_INIT_RESOURCE(pics);
}

namespace {

QString fileOf(const QString &folder, const QString &name)
{
    const QString own = folder + QLatin1String("/pics/") + name;
    const QString builtIn = QLatin1String(":/pics/") + name;
    for (const QString &file :
        { own + QLatin1String(".svg"), own + QLatin1String(".png"), builtIn + QLatin1String(".svg") }) {
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}

} // namespace

const Picture &Picture::named(const QString &name)
{
    useBuiltInPictures();
    static std::unordered_map<QString, Picture> pictures;
    const QString folder = QPEApplication::qpeDir();
    const QString key = folder + u'/' + name;
    const auto known = pictures.find(key);
    return known != pictures.end() ? known->second
                                   : pictures.try_emplace(key, fileOf(folder, name)).first->second;
}

Picture::Picture(const QString &fileName)
{
    if (fileName.endsWith(QLatin1String(".svg"))) {
        m_drawing = std::make_unique<QSvgRenderer>(fileName);
        m_size = m_drawing->isValid() ? m_drawing->defaultSize() : QSize();
    } else if (!fileName.isEmpty()) {
        m_image.load(fileName);
        m_size = m_image.size();
    }
}

Picture::~Picture() = default;

QPixmap Picture::render(QSize devicePixels) const
{
    const QSize fitting = isNull() ? QSize() : m_size.scaled(devicePixels, Qt::KeepAspectRatio);
    if (fitting.isEmpty())
        return {};
    if (!m_drawing)
        return QPixmap::fromImage(m_image.scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    QPixmap pixmap(fitting);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    m_drawing->render(&painter, pixmap.rect());
    return pixmap;
}
