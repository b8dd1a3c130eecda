#pragma once
// frmOptions without its window: the values of every box, read from the
// settings on open (GetINISetting), checked when a box is left, written
// back on Apply in the order of the pages, and the buttons that act on
// files and boxes. The dialog is a thin view over this.

#include "core/options/OptionsTable.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <array>

namespace vonnel {

class Autostart;
class CopyContext;

// Where the options read and write their keys: vonnel.ini of the copy, or
// a recording fake in tests.
class OptionsStore {
public:
    virtual ~OptionsStore() = default;
    virtual QString read(const QString& key) const = 0;
    virtual void write(const QString& key, const QString& value) = 0;
};

// The copy's own settings file.
class CopyOptionsStore : public OptionsStore {
public:
    explicit CopyOptionsStore(CopyContext& ctx) : m_ctx(ctx) {}
    QString read(const QString& key) const override;
    void write(const QString& key, const QString& value) override;

private:
    CopyContext& m_ctx;
};

class OptionsModel : public QObject {
    Q_OBJECT
public:
    OptionsModel(CopyContext& ctx, OptionsStore& store, Autostart& autostart,
                 QObject* parent = nullptr);

    // The program the autostart entry runs, and its words.
    QString programPath;
    QStringList programArgs;

    // A box's value as text ("1"/"0" for a check box).
    QString value(Opt control) const { return m_values[size_t(control)]; }
    bool checked(Opt control) const;
    // The user changed a box. A preset's caption and message follow their
    // rules here.
    void setValue(Opt control, const QString& text);
    void setChecked(Opt control, bool on);
    // The box lost the focus: its rule applies.
    void leaveBox(Opt control);

    // Every box from its key.
    void GetINISetting();
    // Every key from its box, in page order, then the six rings; then the
    // start-up entry follows Load At Startup, and applied() is told.
    void cmdApply_Click();
    // The Advanced tab's boxes take their default values; nothing is
    // written until Apply.
    void cmdDefault_Click();

    // Buttons that act on their own.
    void cmdHelp_Click(OptionsPage page);
    void cmdViewLog_Click();
    void cmdClearLog_Click();
    void cmdClearName_Click();
    void cmdManualEdit_Click();
    void cmdOpenChtRec_Click();
    // Writes AutoConnect from chkAutoCheck (the window then opens frmAutoConnect).
    void cmdAutoConnect_Click();

    // The language in use, for the Menu tab: "English" or the file's name.
    QString languageName() const;

    // The two keys of a preset n (1 to 6).
    static Opt menuBox(int n);
    static Opt messageBox(int n);

Q_SIGNALS:
    void valueChanged(vonnel::Opt control);
    // The keys are written: the main form reloads what it keeps.
    void applied();

private:
    void put(Opt control, const QString& text);
    QString loadValue(const OptRow& row) const;
    void writeRow(const OptRow& row);
    int presetOf(Opt control, bool& isMenu) const;

    CopyContext& m_ctx;
    OptionsStore& m_store;
    Autostart& m_autostart;
    std::array<QString, kOptCount> m_values;
    // Per preset: the caption still follows its message.
    std::array<bool, 7> m_following{};
};

}  // namespace vonnel
