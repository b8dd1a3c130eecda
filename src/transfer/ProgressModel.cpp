#include "transfer/ProgressModel.h"

namespace vonnel {

void ProgressModel::reset()
{
    minimized = false;
    caption.clear();
    txtSendRec.clear();
    cmdPause = ProgressButton{};
    cmdCancel = ProgressButton{};
    chkCloseProgress = false;
    chkCloseProgressVisible = true;
    lblProgress = ProgressLabel{};
    lblFinished.clear();
    lblFilesize.clear();
    lblFilename.clear();
    prbProgress = 0;
}

void ProgressModel::fieldChanged(const void* field)
{
    if (field == &loaded)
        Q_EMIT loadedChanged(loaded);
    else
        Q_EMIT changed();
}

}  // namespace vonnel
