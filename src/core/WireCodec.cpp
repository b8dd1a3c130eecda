#include "core/WireCodec.h"

namespace vonnel::wire {

namespace {

constexpr QByteArrayView kDeletionOpen = "^BK";
constexpr QByteArrayView kDeletionClose = "#BK";
constexpr QByteArrayView kSpaceOpen = "^SPC";
constexpr QByteArrayView kSpaceClose = "#SPC";
constexpr QByteArrayView kLineBreakOpen = "^RETURN";
constexpr QByteArrayView kLineBreakClose = "#RETURN";

struct FileWord {
    FileMessage message;
    QByteArrayView word;
};
// In the order the transfer's dispatcher tests them.
constexpr std::array<FileWord, 12> kFileWords = {{
    {FileMessage::SendingRequest, "%%File Sending Request%%"},
    {FileMessage::RequestOk, "%%FS Request OK%%"},
    {FileMessage::RequestRejected, "%%FS Request Rejected%%"},
    {FileMessage::SendingCancel, "%%Sending Cancel%%"},
    {FileMessage::PauseSending, "%%Pause Sending%%"},
    {FileMessage::ContinueSending, "%%Continue Sending File%%"},
    {FileMessage::ContinueReceiving, "%%Continue Receiving File%%"},
    {FileMessage::Data, kDataOpen},
    {FileMessage::DataReceived, "%%Data Received-"},
    {FileMessage::OpenPauseWindow, "%%Open Pause Window%%"},
    {FileMessage::Unload, "%%Unload%%"},
    {FileMessage::Error, "%%Error%%"},
}};

}  // namespace

QByteArrayView head(Family family)
{
    switch (family) {
    case Family::Version: return kVersionOpen;
    case Family::KeyFrame: return kKeyFrameOpen;
    case Family::OldCipher: return kOldCipherOpen;
    case Family::KeyStroke: return kKeyOpen;
    case Family::Control: return kControl;
    case Family::Paste: return kPasteOpen;
    case Family::Url: return kUrlOpen;
    case Family::SpeakerSet: return kSpeakerSetOpen;
    case Family::Speak: return kSpeakOpen;
    case Family::Message: return kMessageOpen;
    case Family::File: return kFileHead;
    case Family::Data: return kDataOpen;
    case Family::Board: return kBoardHead;
    }
    return {};
}

std::optional<Wrapping> wrapping(Family family)
{
    switch (family) {
    case Family::Version: return Wrapping{kVersionOpen, kVersionClose};
    case Family::KeyFrame: return Wrapping{kKeyFrameOpen, kKeyFrameClose};
    case Family::OldCipher: return Wrapping{kOldCipherOpen, kOldCipherClose};
    case Family::Paste: return Wrapping{kPasteOpen, kPasteClose};
    case Family::Url: return Wrapping{kUrlOpen, kUrlClose};
    case Family::SpeakerSet: return Wrapping{kSpeakerSetOpen, kSpeakerSetClose};
    case Family::Speak: return Wrapping{kSpeakOpen, kSpeakClose};
    case Family::Message: return Wrapping{kMessageOpen, kMessageClose};
    default: return std::nullopt;
    }
}

Cut cutFrame(QByteArrayView data, QByteArrayView open, QByteArrayView close)
{
    Cut cut;
    // The inner text: from behind the first opening word (the start when
    // there is none) to the next closing word behind it.
    qsizetype from = open.isEmpty() ? 0 : data.indexOf(open);
    from = from < 0 ? open.size() : from + open.size();
    if (from > data.size())
        from = data.size();
    const QByteArrayView search = data.sliced(from);
    const qsizetype q = close.isEmpty() ? 0 : search.indexOf(close);
    if (q > 0)
        cut.inner = search.first(q);
    // What is taken: through the first closing word anywhere, or as many
    // bytes as the closing word is long when there is none.
    qsizetype p = close.isEmpty() ? 0 : data.indexOf(close);
    cut.closed = p >= 0;
    if (p < 0)
        p = 0;
    cut.consumed = qMin(data.size(), p + close.size());
    return cut;
}

KeyStroke cutKeyStroke(QByteArrayView data)
{
    KeyStroke k;
    const Cut c = cutFrame(data, kKeyOpen, kKeyCharClose);
    k.character = c.inner;
    const QByteArrayView rest = data.sliced(c.consumed);
    const Cut n = cutFrame(rest, {}, kKeyClose);
    k.position = n.inner;
    k.consumed = c.consumed + n.consumed;
    return k;
}

NumberedWords words(Numbered code)
{
    switch (code) {
    case Numbered::Deletion: return {kDeletionOpen, kDeletionClose};
    case Numbered::Space: return {kSpaceOpen, kSpaceClose};
    case Numbered::LineBreak: return {kLineBreakOpen, kLineBreakClose};
    }
    return {};
}

QByteArrayView word(FileMessage message)
{
    for (const FileWord& w : kFileWords)
        if (w.message == message)
            return w.word;
    return {};
}

std::optional<FileMessage> fileMessageAt(QByteArrayView data)
{
    for (const FileWord& w : kFileWords)
        if (data.startsWith(w.word))
            return w.message;
    return std::nullopt;
}

std::optional<FileMessage> fileMessageAt(QStringView text)
{
    for (const FileWord& w : kFileWords)
        if (text.startsWith(QLatin1StringView(w.word)))
            return w.message;
    return std::nullopt;
}

std::optional<qsizetype> fileMessageLength(QByteArrayView data)
{
    const std::optional<FileMessage> m = fileMessageAt(data);
    if (!m)
        return std::nullopt;
    const qsizetype headLength = word(*m).size();
    const auto through = [&](QByteArrayView end, qsizetype missing) {
        const qsizetype p = data.indexOf(end, headLength);
        return p < 0 ? qMin(missing, data.size()) : p + end.size();
    };
    switch (*m) {
    case FileMessage::SendingRequest:
    case FileMessage::RequestOk:
        return through(kRequestEnd, 3);
    case FileMessage::DataReceived:
        return through(kFileHead, headLength);
    case FileMessage::SendingCancel:
    case FileMessage::Data:
    case FileMessage::Error:
        return data.size();
    default:
        return headLength;
    }
}

QByteArray wrap(QByteArrayView open, QByteArrayView inner, QByteArrayView close)
{
    QByteArray out;
    out.reserve(open.size() + inner.size() + close.size());
    out.append(open).append(inner).append(close);
    return out;
}

QByteArray versionFrame(QByteArrayView version)
{
    return wrap(kVersionOpen, version, kVersionClose);
}

QByteArray keyFrame(QByteArrayView key)
{
    return wrap(kKeyFrameOpen, key, kKeyFrameClose);
}

QByteArray keyStroke(QByteArrayView character, int position)
{
    return wrap(kKeyOpen, character, kKeyCharClose) + QByteArray::number(position) +
           kKeyClose.toByteArray();
}

QByteArray numbered(Numbered code, int n)
{
    const NumberedWords w = words(code);
    return wrap(w.open, QByteArray::number(n), w.close);
}

QByteArray dataReceived(QByteArrayView countText)
{
    return wrap(word(FileMessage::DataReceived), countText, kFileHead);
}

}  // namespace vonnel::wire
