#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

namespace sky::network {

// The ':'-separated fields of one whazzup line, split once. A field beyond the last reads as empty,
// as every reader of the format expects.
class LineFields {
public:
    explicit LineFields(QStringView line);

    QStringView operator[](qsizetype index) const {
        return index >= 0 && index < m_fields.size() ? m_fields[index] : QStringView();
    }
    QString Text(qsizetype index) const { return (*this)[index].toString(); }
    qsizetype Count() const { return m_fields.size(); }

private:
    QVarLengthArray<QStringView, 48> m_fields;
};

// Field index (from 0) of a ':'-separated line, or empty when the line has fewer fields.
QString GetField(QStringView line, qsizetype index);

} // namespace sky::network
