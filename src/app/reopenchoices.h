#pragma once

#include "editor/notice.h"

#include <vector>

class DocumentLoader;
class ctlEditer;

/// The codes in which a document's file can be read again, with what does so. The document must be there as
/// long as they are.
std::vector<NoticeOffer> reopenChoices(DocumentLoader &loader, ctlEditer *editor);
