#pragma once
// The lookup all visible text goes through: the entry of the active
// language file, else the program's own text. Read on every call.

#include <QString>

namespace vonnel {

class Translator {
public:
    explicit Translator(QString appPath) : m_appPath(std::move(appPath)) {}

    bool translationOn() const { return m_on; }
    void setTranslationOn(bool on) { m_on = on; }
    // The language file, as the key LangFile holds it; a bare or relative
    // name lies in the application folder.
    QString langPath() const { return m_langPath; }
    void setLangFile(const QString& langFile);

    QString translate(const QString& key, const QString& fallback = QString()) const;

private:
    QString m_appPath;
    QString m_langPath;
    bool m_on = false;
};

}  // namespace vonnel
