#include "platform/endquestion.h"

#include "platform/qpeapplication.h"

namespace {

void setOpen(bool open)
{
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        application->setEndOpen(open);
}

} // namespace

EndQuestion::EndQuestion()
{
    setOpen(true);
}

EndQuestion::~EndQuestion()
{
    setOpen(false);
}
