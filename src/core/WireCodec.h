#pragma once
// The frames of the wire, on bytes: every frame word spelled once, pure
// decoders that recognise one frame at the start of a text and say what it
// holds and how many bytes it takes, and builders that produce the exact
// bytes a peer expects. The cutting keeps the peers' arithmetic: a frame
// whose end is missing gives an empty inner text, and the text it leaves
// behind is what remains after the first closing word anywhere in it (or
// after as many bytes as the closing word is long when there is none).

#include <QByteArray>
#include <QByteArrayView>
#include <QLatin1String>
#include <array>
#include <optional>

namespace vonnel::wire {

// --- the frame words ----------------------------------------------------------
inline constexpr QByteArrayView kVersionOpen = "!ver.";
inline constexpr QByteArrayView kVersionClose = "ver!";
inline constexpr QByteArrayView kKeyFrameOpen = "tt:=";
inline constexpr QByteArrayView kKeyFrameClose = "=:tt";
inline constexpr QByteArrayView kOldCipherOpen = "<e#";
inline constexpr QByteArrayView kOldCipherClose = "#e>";
inline constexpr QByteArrayView kKeyOpen = "<KEY> ";
inline constexpr QByteArrayView kKeyCharClose = " <:KEY>";
inline constexpr QByteArrayView kKeyClose = "</KEY>";
inline constexpr QByteArrayView kPasteOpen = "<Paste> ";
inline constexpr QByteArrayView kPasteClose = "</Paste>";
inline constexpr QByteArrayView kUrlOpen = "<URL> ";
inline constexpr QByteArrayView kUrlClose = " </URL>";
inline constexpr QByteArrayView kSpeakerSetOpen = "<SPKSET> ";
inline constexpr QByteArrayView kSpeakerSetClose = " </SPKSET>";
inline constexpr QByteArrayView kSpeakOpen = "<SPK> ";
inline constexpr QByteArrayView kSpeakClose = " </SPK>";
inline constexpr QByteArrayView kMessageOpen = "<MSG> ";
inline constexpr QByteArrayView kMessageClose = " </MSG>";
inline constexpr QByteArrayView kBoardChatOpen = "&&<#> ";
inline constexpr QByteArrayView kBoardChatClose = " <#>&&";
// The close of an empty board chat line, the away notice's take-back: the
// opening's blank is its own, "&&<#> " + "<#>&&".
inline constexpr QByteArrayView kBoardChatEmptyClose = kBoardChatClose.sliced(1);
inline constexpr QByteArrayView kBoardLabelOpen = "&&lbl";
inline constexpr QByteArrayView kBoardLabelClose = "$";
inline constexpr QByteArrayView kDataOpen = "<*> ";
inline constexpr QByteArrayView kDataClose = " </*>";
inline constexpr QByteArrayView kControl = "^";
// Going private between two copies of ours: the caller's offer, the
// callee's acceptance or refusal. Each is a write of its own, and nothing
// follows it until the answer: a peer of the old wire drops an unknown "^"
// code together with whatever shares its read.
inline constexpr QByteArrayView kPrivateOffer = "^Vonnel-TLS?";
inline constexpr QByteArrayView kPrivateAccept = "^Vonnel-TLS!";
inline constexpr QByteArrayView kPrivateDecline = "^Vonnel-TLS-";
inline constexpr QByteArrayView kFileHead = "%%";
inline constexpr QByteArrayView kBoardHead = "&&";
inline constexpr QByteArrayView kReady = "&&!Ready!&&";
// Control codes without a number.
inline constexpr QByteArrayView kRefresh = "^reFresh";
inline constexpr QByteArrayView kClear = "^Clr";
inline constexpr QByteArrayView kShutDown = "^SD";
inline constexpr QByteArrayView kTab = "^TAB";
inline constexpr QByteArrayView kCarriageReturn = "^Cr";
// The ring: "^g" name "^G^"; "^rW" asks for the ring file; "^s>" size
// name announces it.
inline constexpr QByteArrayView kRingOpen = "^g";
inline constexpr QByteArrayView kRingClose = "^G^";
inline constexpr QByteArrayView kRingWanted = "^rW";
inline constexpr QByteArrayView kRingSize = "^s>";
// The format of the panes: "^ff" font ... "^>".
inline constexpr QByteArrayView kFormatOpen = "^ff";
inline constexpr QByteArrayView kFormatClose = "^>";
// The fields of the format message, each word in front of its value.
inline constexpr QByteArrayView kFormatBold = "^fb";
inline constexpr QByteArrayView kFormatItalic = "^fi";
inline constexpr QByteArrayView kFormatSize = "^fs";
inline constexpr QByteArrayView kFormatFore = "^fc";
inline constexpr QByteArrayView kFormatBack = "^bc";
inline constexpr QByteArrayView kNotReady = "&&!NotReady!&&";
// The board's word for "the picture has arrived, show it"; the transfer
// sends it, the board reads it (its other words are in board/BoardCodec).
inline constexpr QByteArrayView kBoardShowPic = "&&showPic$";

// A frame word as text, for code that builds and reads frames as text.
inline QLatin1String text(QByteArrayView word) { return QLatin1String(word); }

// --- the frame families, in the order the receiver tests them ------------------
enum class Family {
    Version,     // "!ver." version "ver!"
    KeyFrame,    // "tt:=" key "=:tt"
    OldCipher,   // "<e#" one enciphered character "#e>"
    KeyStroke,   // "<KEY> " character " <:KEY>" position "</KEY>"
    Control,     // "^" code ...
    Paste,       // "<Paste> " text "</Paste>"
    Url,         // "<URL> " address " </URL>"
    SpeakerSet,  // "<SPKSET> " fields " </SPKSET>"
    Speak,       // "<SPK> " line " </SPK>"
    Message,     // "<MSG> " record line " </MSG>"
    File,        // "%%" message ...
    Data,        // "<*> " payload ...
    Board,       // "&&" message ...
};
inline constexpr std::array<Family, 13> kReceiveOrder = {
    Family::Version, Family::KeyFrame, Family::OldCipher, Family::KeyStroke,
    Family::Control, Family::Paste,    Family::Url,       Family::SpeakerSet,
    Family::Speak,   Family::Message,  Family::File,      Family::Data,
    Family::Board};
// The word a frame of the family begins with.
QByteArrayView head(Family family);

// --- cutting ---------------------------------------------------------------------
// A frame opened by open at the start of data and closed by close.
struct Cut {
    QByteArrayView inner;  // empty when no close follows the opening
    qsizetype consumed = 0;  // bytes of data the frame takes off
    bool closed = false;  // the closing word is in data
};
Cut cutFrame(QByteArrayView data, QByteArrayView open, QByteArrayView close);

// The families whose inner text is one field between two words: Version,
// KeyFrame, OldCipher, Paste, Url, SpeakerSet, Speak, Message. The text
// frames that are enciphered under encryption are those of
// kEnciphered, in the order the send routine tests them.
struct Wrapping {
    QByteArrayView open;
    QByteArrayView close;
};
std::optional<Wrapping> wrapping(Family family);
struct EncipheredFrame {
    QByteArrayView open;
    QByteArrayView close;  // empty: one character, then "#e>"
};
inline constexpr std::array<EncipheredFrame, 8> kEnciphered = {{
    {kPasteOpen, kPasteClose},
    {kKeyOpen, kKeyCharClose},
    {kOldCipherOpen, {}},
    {kBoardChatOpen, kBoardChatClose},
    {kBoardLabelOpen, kBoardLabelClose},
    {kUrlOpen, kUrlClose},
    {kSpeakOpen, kSpeakClose},
    {kMessageOpen, kMessageClose},
}};

// "<KEY> " c " <:KEY>" n "</KEY>": the character and the position text.
struct KeyStroke {
    QByteArrayView character;
    QByteArrayView position;  // as sent; empty when the read cut it off
    qsizetype consumed = 0;
};
KeyStroke cutKeyStroke(QByteArrayView data);

// --- control codes ---------------------------------------------------------------
// The codes that carry a number between an opening and a closing word.
enum class Numbered { Deletion, Space, LineBreak };
struct NumberedWords {
    QByteArrayView open;
    QByteArrayView close;
};
NumberedWords words(Numbered code);

// --- file messages ---------------------------------------------------------------
enum class FileMessage {
    SendingRequest,   // "%%File Sending Request%%" name ">" size "*fs*"
    RequestOk,        // "%%FS Request OK%%"
    RequestRejected,  // "%%FS Request Rejected%%"
    SendingCancel,    // "%%Sending Cancel%%"
    PauseSending,     // "%%Pause Sending%%"
    ContinueSending,  // "%%Continue Sending File%%"
    ContinueReceiving,  // "%%Continue Receiving File%%"
    Data,             // "<*> " payload
    DataReceived,     // "%%Data Received-" count "%%"
    OpenPauseWindow,  // "%%Open Pause Window%%"
    Unload,           // "%%Unload%%"
    Error,            // "%%Error%%"
};
QByteArrayView word(FileMessage message);
// Which of the twelve stands at the start of data.
std::optional<FileMessage> fileMessageAt(QByteArrayView data);
// The same on text: the words are ASCII without '?', so a text starts with
// one exactly when its cp1252 bytes do, and nothing need be converted.
std::optional<FileMessage> fileMessageAt(QStringView text);
// How many bytes of data one message takes when only consumed, message by
// message (a request up to its "*fs*", an acknowledgement up to its closing
// "%%", a data frame or a cancel the whole rest). nullopt for none of the
// twelve.
std::optional<qsizetype> fileMessageLength(QByteArrayView data);
inline constexpr QByteArrayView kRequestEnd = "*fs*";

// --- builders --------------------------------------------------------------------
QByteArray wrap(QByteArrayView open, QByteArrayView inner, QByteArrayView close);
QByteArray versionFrame(QByteArrayView version);
QByteArray keyFrame(QByteArrayView key);
QByteArray keyStroke(QByteArrayView character, int position);
QByteArray numbered(Numbered code, int n);
QByteArray dataReceived(QByteArrayView countText);

}  // namespace vonnel::wire
