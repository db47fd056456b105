#include "app/reopenchoices.h"

#include "app/documentfile.h"
#include "app/documentloader.h"
#include "document/utf16text.h"
#include "filedialog/filechoices.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// With its mark, where the file has one of that order.
NoticeOffer utf16Choice(DocumentLoader &loader, ctlEditer *editor, bool isBigEndian)
{
    const Utf16Form unmarked{ isBigEndian, false };
    const Utf16Form found = std::as_const(*editor).document().findings().utf16.value_or(unmarked);
    const Utf16Form form = found.isBigEndian == isBigEndian ? found : unmarked;
    return { [=] { return isBigEndian ? u"UTF-16BE"_s : u"UTF-16LE"_s; },
        [=, &loader] { loader.reopenUtf16(editor, form); } };
}

} // namespace

std::vector<NoticeOffer> reopenChoices(DocumentLoader &loader, ctlEditer *editor)
{
    std::vector<NoticeOffer> choices;
    choices.reserve(charCodeChoices.size() + 2);
    for (const CharCode code : charCodeChoices)
        choices.push_back(
            { [=] { return QString(infoOf(code).label); }, [=, &loader] { loader.reopen(editor, code); } });
    for (const bool isBigEndian : { false, true })
        choices.push_back(utf16Choice(loader, editor, isBigEndian));
    return choices;
}
