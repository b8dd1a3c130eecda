#pragma once
// The tips of the day: one tip per line of a text file in the application
// folder, shown from a random place and wrapping at the end.

#include <QString>
#include <QStringList>

namespace vonnel {

class Tips {
public:
    // Reads the file; start is the first tip shown (taken modulo the count).
    Tips(const QString& path, int start);
    bool isEmpty() const { return m_tips.isEmpty(); }
    int count() const { return int(m_tips.size()); }
    QString current() const { return m_tips.isEmpty() ? QString() : m_tips.at(m_index); }
    // cmdNextTip: the next tip, the first after the last.
    QString next();

private:
    QStringList m_tips;
    int m_index = 0;
};

}  // namespace vonnel
