#pragma once
// The look of one text pane: font name, size, bold, italic, text and
// background colour. The logic sets it; the window shows it. Colours are
// the settings' colour numbers: blue * 65536 + green * 256 + red.

#include <QColor>
#include <QObject>
#include <QString>
#include <optional>

namespace vonnel {

class PaneFormat : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    QString fontName() const { return m_fontName; }
    double size() const { return m_size; }
    bool bold() const { return m_bold; }
    bool italic() const { return m_italic; }
    qint64 foreColor() const { return m_foreColor; }
    qint64 backColor() const { return m_backColor; }

    void setFontName(const QString& name);
    // Sizes that a pane cannot take (0 or below) are refused and the old
    // size stays.
    void setSize(double size);
    void setBold(bool on);
    void setItalic(bool on);
    void setForeColor(qint64 colour);
    void setBackColor(qint64 colour);
    // Takes every attribute of another pane's look.
    void copyFrom(const PaneFormat& other);

    // What the pane reports for each attribute, as the format message
    // carries it: "True"/"False", the size as a plain decimal, colours as
    // decimal numbers.
    QString boldText() const { return boolText(m_bold); }
    QString italicText() const { return boolText(m_italic); }
    QString sizeText() const { return numberText(m_size); }
    QString foreColorText() const { return QString::number(m_foreColor); }
    QString backColorText() const { return QString::number(m_backColor); }

    static QString boolText(bool on);
    // A decimal number without padding, with a fraction only where it has
    // one ("10", "10.5").
    static QString numberText(double v);

    static QColor toColor(qint64 colour);
    static qint64 fromColor(const QColor& c);

Q_SIGNALS:
    void changed();

private:
    QString m_fontName = QStringLiteral("Arial");
    double m_size = 10;
    bool m_bold = false;
    bool m_italic = false;
    qint64 m_foreColor = 0;
    qint64 m_backColor = 16777215;
};

}  // namespace vonnel
