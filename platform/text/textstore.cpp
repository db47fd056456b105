#include "platform/text/textstore.h"

#include "tests/platform/text/modelstore.h"

class TextStore::Private : public ModelStore {
public:
    using ModelStore::ModelStore;
};

class TextPiece::Private {
public:
    QString text;
};

TextStore::TextStore()
    : TextStore(LayoutRule{})
{
}
TextStore::TextStore(const LayoutRule &rule)
    : d(std::make_unique<Private>(rule))
{
}
TextStore::TextStore(TextStore &&) noexcept = default;
TextStore &TextStore::operator=(TextStore &&) noexcept = default;
TextStore::~TextStore() = default;

qint64 TextStore::length() const
{
    return d->length();
}
qint64 TextStore::lineCount() const
{
    return d->lineCount();
}
qint64 TextStore::rowCount() const
{
    return d->rows().size();
}
Subpixels TextStore::widestRow() const
{
    return d->widestRow();
}
const LayoutRule &TextStore::layoutRule() const
{
    return d->layoutRule();
}
void TextStore::setLayoutRule(const LayoutRule &rule)
{
    d->setLayoutRule(rule);
}
char16_t TextStore::at(qint64 offset) const
{
    return d->text().at(offset).unicode();
}
QString TextStore::text(qint64 offset, qint64 length) const
{
    return d->text().mid(offset, length);
}

TextChunk TextStore::chunkAt(qint64 offset) const
{
    return { offset, {}, QStringView(d->text()).sliced(offset).first(qMin<qint64>(4096, length() - offset)) };
}

TextChunk TextStore::chunkBefore(qint64 end) const
{
    const qint64 begin = qMax<qint64>(0, end - 4096);
    return { begin, {}, QStringView(d->text()).sliced(begin, end - begin) };
}

void TextStore::replace(qint64 offset, qint64 removed, QStringView inserted)
{
    Q_ASSERT(offset >= 0 && removed >= 0 && offset + removed <= length());
    d->replace(offset, removed, inserted);
}

TextPiece TextStore::take(qint64 offset, qint64 length)
{
    TextPiece taken = piece(offset, length);
    replace(offset, length, {});
    return taken;
}

TextPiece TextStore::piece(qint64 offset, qint64 length) const
{
    return TextPiece(text(offset, length));
}
void TextStore::insert(qint64 offset, const TextPiece &piece)
{
    replace(offset, 0, piece.text());
}
TextStore::Row TextStore::row(qint64 row) const
{
    return d->rows().at(row);
}

RowCol TextStore::rowColAt(qint64 offset) const
{
    Q_ASSERT(offset >= 0 && offset <= length());
    const qint64 row = d->rowAt(offset);
    return { row, offset - d->rows().at(row).start };
}

qint64 TextStore::offsetAt(RowCol position) const
{
    return d->rows().at(position.row).start + position.column;
}
qint64 TextStore::lineAt(qint64 offset) const
{
    return d->lineAt(offset);
}

LineCol TextStore::lineColAt(qint64 offset) const
{
    const qint64 line = lineAt(offset);
    return { line, offset - lineStart(line) };
}

qint64 TextStore::lineStart(qint64 line) const
{
    return d->lineStart(line);
}
qint64 TextStore::rowOfLine(qint64 line) const
{
    return d->rowAt(lineStart(line));
}
qint64 TextStore::lineOfRow(qint64 row) const
{
    return lineAt(d->rows().at(row).start);
}
Subpixels TextStore::xAt(RowCol position) const
{
    return d->xAt(position);
}
qint64 TextStore::columnAt(qint64 row, Subpixels x) const
{
    return d->columnAt(row, x);
}
void TextStore::checkInvariants() const
{
    Q_ASSERT(rowCount() >= 1);
}
void TextStore::setLeafCapacity(int) { }

TextPiece::TextPiece()
    : d(std::make_unique<Private>())
{
}
TextPiece::TextPiece(TextPiece &&) noexcept = default;
TextPiece &TextPiece::operator=(TextPiece &&) noexcept = default;
TextPiece::~TextPiece() = default;
TextPiece::TextPiece(QStringView text)
    : d(std::make_unique<Private>(Private{ text.toString() }))
{
}
qint64 TextPiece::length() const
{
    return d ? d->text.size() : 0;
}
QString TextPiece::text() const
{
    return d ? d->text : QString();
}
qint64 TextPiece::memory() const
{
    return 2 * length();
}
void TextPiece::append(TextPiece &&other)
{
    d->text.append(other.d->text);
}
void TextPiece::prepend(TextPiece &&other)
{
    d->text.prepend(other.d->text);
}

class TextStore::Builder::Private {
public:
    LayoutRule rule;
    QString text;
};

TextStore::Builder::Builder(const LayoutRule &rule)
    : d(std::make_unique<Private>(Private{ rule, {} }))
{
}
TextStore::Builder::Builder(Builder &&) noexcept = default;
TextStore::Builder::~Builder() = default;
void TextStore::Builder::append(QByteArrayView latin1)
{
    d->text.append(QString::fromLatin1(latin1));
}
void TextStore::Builder::append(QStringView text)
{
    d->text.append(text);
}

TextStore TextStore::Builder::finish()
{
    TextStore store(d->rule);
    store.d->setText(std::exchange(d->text, {}));
    return store;
}
