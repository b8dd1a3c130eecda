#pragma once
// The lookup all visible text goes through: the entry of the active
// language file, else the program's own text. Read on every call, so a
// language file saved in an editor shows at the next lookup.

#include <QString>
#include <functional>

namespace vonnel {

class Translator {
public:
    // The lookup reads a language entry into a buffer of its own, one
    // longer than the settings' buffer: values come back cut at 255.
    static constexpr int kReadBuffer = 256;

    explicit Translator(QString appPath) : m_appPath(std::move(appPath)) {}

    bool translationOn() const { return m_on; }
    void setTranslationOn(bool on) { m_on = on; }
    // The language file, as the key LangFile holds it; a bare or relative
    // name lies in the application folder.
    QString langPath() const { return m_langPath; }
    void setLangFile(const QString& langFile);

    QString translate(const QString& key, const QString& fallback = QString()) const;

    // Told every key asked, whatever the answer (the check that Lang.txt
    // holds every key the windows ask for listens here).
    void setLookupRecorder(std::function<void(const QString& key)> recorder)
    {
        m_recorder = std::move(recorder);
    }

private:
    QString m_appPath;
    QString m_langPath;
    bool m_on = false;
    std::function<void(const QString&)> m_recorder;
};

}  // namespace vonnel
