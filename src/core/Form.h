#pragma once
// The program's windows the logic asks to show, close or look at.

#include <QString>

namespace vonnel {

enum class Form {
    frmMain,
    frmLogin,
    frmProperty,
    frmIPBlocking,
    frmIPPermit,
    frmPopMsg,
    frmTip,
    frmDraw,
    frmProgress,
    frmLock,
    frmPassLock,
    frmNetView,
    frmURLHistory,
    frmNetRange,
    frmNetResolve,
    frmAutoConnect,
    frmAutoIP,
    frmOptions,
};

inline constexpr int kFormCount = int(Form::frmOptions) + 1;

// The form's object name: "frmProperty", "frmLogin" ...
inline QString formName(Form f)
{
    switch (f) {
    case Form::frmMain: return QStringLiteral("frmMain");
    case Form::frmLogin: return QStringLiteral("frmLogin");
    case Form::frmProperty: return QStringLiteral("frmProperty");
    case Form::frmIPBlocking: return QStringLiteral("frmIPBlocking");
    case Form::frmIPPermit: return QStringLiteral("frmIPPermit");
    case Form::frmPopMsg: return QStringLiteral("frmPopMsg");
    case Form::frmTip: return QStringLiteral("frmTip");
    case Form::frmDraw: return QStringLiteral("frmDraw");
    case Form::frmProgress: return QStringLiteral("frmProgress");
    case Form::frmLock: return QStringLiteral("frmLock");
    case Form::frmPassLock: return QStringLiteral("frmPassLock");
    case Form::frmNetView: return QStringLiteral("frmNetView");
    case Form::frmURLHistory: return QStringLiteral("frmURLHistory");
    case Form::frmNetRange: return QStringLiteral("frmNetRange");
    case Form::frmNetResolve: return QStringLiteral("frmNetResolve");
    case Form::frmAutoConnect: return QStringLiteral("frmAutoConnect");
    case Form::frmAutoIP: return QStringLiteral("frmAutoIP");
    case Form::frmOptions: return QStringLiteral("frmOptions");
    }
    return QString();
}

}  // namespace vonnel
