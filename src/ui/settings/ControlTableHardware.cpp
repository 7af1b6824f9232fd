// Page of the mouse, its battery, and the program itself.

#include "ui/settings/ControlTable.h"

#include <QtGlobal>

namespace mevo {

namespace {

using namespace control; // NOLINT(google-build-using-namespace): the rows are nothing but its calls

std::vector<ControlRow> keyRows()
{
    return {
        choice("comboBox_MouseCustomLeftKey", QT_TRANSLATE_NOOP("CSettingDialog", "4键"), nullptr, {}).slot(),
        choice("comboBox_MouseCustomRightKey", QT_TRANSLATE_NOOP("CSettingDialog", "5键"), nullptr, {})
            .slot(),
    };
}

std::vector<ControlRow> resolutionRows()
{
    return {
        mouse(mouseDPI, 0, "radioButton_Mouse_SetDPI800", "800"),
        mouse(mouseDPI, 1, "radioButton_Mouse_SetDPI1600", "1600"),
        mouse(mouseDPI, 2, "radioButton_Mouse_SetDPI2400", "2400"),
    };
}

std::vector<ControlRow> rateRows()
{
    return {
        mouse(mouseDataRate, 0, "radioButton__Mouse_SetDataRate125", "125Hz"),
        mouse(mouseDataRate, 1, "radioButton__Mouse_SetDataRate250", "250Hz"),
        mouse(mouseDataRate, 2, "radioButton__Mouse_SetDataRate500", "500Hz"),
    };
}

std::vector<ControlRow> wheelRows()
{
    return {
        mouse(mouseWheelSpeed, 0, "radioButton__Mouse_SetWheelSpeed_Low",
              QT_TRANSLATE_NOOP("CSettingDialog", "慢速")),
        mouse(mouseWheelSpeed, 1, "radioButton__Mouse_SetWheelSpeed_Standard",
              QT_TRANSLATE_NOOP("CSettingDialog", "标准")),
        mouse(mouseWheelSpeed, 2, "radioButton__Mouse_SetWheelSpeed_Fast",
              QT_TRANSLATE_NOOP("CSettingDialog", "快速")),
    };
}

std::vector<ControlRow> batteryRows()
{
    return {
        button("pushButton_ReadPowerLevel", QT_TRANSLATE_NOOP("CSettingDialog", "读取电量")),
        other(ControlKind::Picture, "pushButton_ReadPowerLevel_2",
              QT_TRANSLATE_NOOP("CSettingDialog", "电量"))
            .slot(),
    };
}

std::vector<ControlRow> receiverRows()
{
    return {
        button("pushButton_GetDongleID", QT_TRANSLATE_NOOP("CSettingDialog", "读取接收器编号")),
        other(ControlKind::Caption, "label_DongleID"),
        button("pushButton_GetMouseID", QT_TRANSLATE_NOOP("CSettingDialog", "读取鼠标编号")).line(),
    };
}

std::vector<ControlRow> softwareRows()
{
    return {
        other(ControlKind::Caption, "label_Version"),
        other(ControlKind::Notice, "pushButton_UpdateNotice").slot().line(),
        button("pushButton_CheckUpdate", QT_TRANSLATE_NOOP("CSettingDialog", "检查更新")).line(),
        button("pushButton_DrvDownload", QT_TRANSLATE_NOOP("CSettingDialog", "驱动下载")),
        button("pushButton_Manual", QT_TRANSLATE_NOOP("CSettingDialog", "产品使用说明")),
        button("pushButton_FirstStart", QT_TRANSLATE_NOOP("CSettingDialog", "开始使用"))
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "检查账号、接收器和麦克风是否可用")),
        button("pushButton_WebAddress", QT_TRANSLATE_NOOP("CSettingDialog", "官方网站")),
        other(ControlKind::Caption, "label_SupportContact").line(),
        other(ControlKind::Caption, "label_SupportEmail").line(),
        other(ControlKind::Caption, "label_RunFigures").when(ShownWhen::RunFigures).line(),
    };
}

} // namespace

std::vector<GroupRow> hardwareGroups()
{
    const char *const mouseBox = "groupBox_Mouse";
    return {
        {mouseBox, Page::Hardware, QT_TRANSLATE_NOOP("CSettingDialog", " 鼠标设置"), keyRows()},
        {"groupBox_DPI", Page::Hardware, "DPI", resolutionRows(), mouseBox},
        {"groupBox_DataRate", Page::Hardware, QT_TRANSLATE_NOOP("CSettingDialog", "回报率"), rateRows(),
         mouseBox},
        {"groupBox_WheelSpeed", Page::Hardware, QT_TRANSLATE_NOOP("CSettingDialog", "滚轮"), wheelRows(),
         mouseBox},
        {"groupBox_PowerLevel", Page::Hardware, QT_TRANSLATE_NOOP("CSettingDialog", "电量"), batteryRows(),
         nullptr, ShownWhen::Battery},
        {"groupBox_Receiver", Page::Hardware, QT_TRANSLATE_NOOP("CSettingDialog", "接收器"), receiverRows()},
        {"groupBox_Software", Page::Hardware, QT_TRANSLATE_NOOP("CSettingDialog", " 软件下载"),
         softwareRows()},
    };
}

} // namespace mevo
