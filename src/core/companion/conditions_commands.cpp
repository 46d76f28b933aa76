#include "companion/conditions_commands.h"

#include "conditions/runways.h"

using namespace Qt::StringLiterals;

namespace sky::companion {

void Rwy(CommandContext& c, const QString& code) {
    c.AddText(u"> rwy "_s + code);
    const conditions::AirportAtis atis = conditions::AtisOf(c.Shown(), code);
    QString answer = code + u" runways in use: "_s;
    if (!atis.Online)
        answer += u"no ATIS online"_s;
    else
        answer += (atis.Runways.IsEmpty() ? u"not given"_s : conditions::RunwaysText(atis.Runways)) +
                  (atis.Letter.isEmpty() ? QString() : u" (ATIS "_s + atis.Letter + u')');
    c.AddText(answer + kCrLf);
}

} // namespace sky::companion
