#include "foundation/ui/CarryOut.h"

#include "foundation/ui/BaseScreen.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"

bool carryOut(BaseScreen *screen, const std::function<Outcome()> &rule)
{
    Outcome out;
    if (!runSafely(screen, [&] { out = rule(); }))
        return false;
    if (!out)
        return screen->refuse(out);
    if (!out.notice.isEmpty())
        MessageService::information(screen, out.notice);
    MessageService::information(screen, out.message);
    return true;
}
