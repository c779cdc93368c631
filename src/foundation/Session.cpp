#include "foundation/Session.h"

Session &session()
{
    static Session s;
    return s;
}
