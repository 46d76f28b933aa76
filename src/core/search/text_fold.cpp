#include "search/text_fold.h"

using namespace Qt::StringLiterals;

namespace sky::search {

QString Fold(const QString& text) {
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    bool blank = true; // no blank at the start
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c.isLetterOrNumber()) {
            // Letters that do not come apart into a letter and an accent.
            switch (c.unicode()) {
            case u'ß':
                folded += u"ss"_s;
                break;
            case u'ø':
            case u'Ø':
                folded += u'o';
                break;
            case u'æ':
            case u'Æ':
                folded += u"ae"_s;
                break;
            case u'œ':
            case u'Œ':
                folded += u"oe"_s;
                break;
            case u'ł':
            case u'Ł':
                folded += u'l';
                break;
            case u'đ':
            case u'Đ':
                folded += u'd';
                break;
            case u'ı':
                folded += u'i';
                break;
            default:
                folded += c.toLower();
            }
            blank = false;
        } else if (!blank) {
            folded += u' ';
            blank = true;
        }
    }
    if (folded.endsWith(u' '))
        folded.chop(1);
    return folded;
}

QStringList Words(const QString& folded) {
    return folded.split(u' ', Qt::SkipEmptyParts);
}

} // namespace sky::search
