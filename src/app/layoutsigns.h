#pragma once

#include "editor/worksign.h"

#include <QObject>

#include <map>

class DocumentArea;
class ctlEditer;

/// Tell in the strip how far the new layout of a long text is, after a change of font, tab width, wrap or
/// window, and offer to stop it.
class LayoutSigns : public QObject {
public:
    /// `documents` is not owned. Documents that are there already have no signs.
    explicit LayoutSigns(DocumentArea &documents);

private:
    void watch(ctlEditer *editor);

    DocumentArea &m_documents;
    std::map<const ctlEditer *, WorkSign> m_signs;
};
