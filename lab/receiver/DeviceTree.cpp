#include "receiver/DeviceTree.h"

#include <QString>

#include <sys/sysmacros.h>

namespace mevo::lab {

namespace {

constexpr unsigned char descriptorBytes[] = {
    0x05, 0x0D,       // usage page digitizers
    0x09, 0x01,       // usage 1
    0xA1, 0x01,       // collection, application
    0x85, 0x01,       //   report id 1
    0x15, 0x00,       //   logical minimum 0
    0x26, 0xFF, 0x00, //   logical maximum 255
    0x75, 0x08,       //   report size 8 bits
    0x95, 0x0F,       //   report count 15
    0x09, 0x01,       //   usage 1
    0x81, 0x02,       //   input, variable
    0xC0,             // end
    0x06, 0x00, 0xFF, // usage page vendor 0xFF00
    0x09, 0x01,       // usage 1
    0xA1, 0x01,       // collection, application
    0x85, 0x05,       //   report id 5
    0x15, 0x00,       //   logical minimum 0
    0x26, 0xFF, 0x00, //   logical maximum 255
    0x75, 0x08,       //   report size 8 bits
    0x95, 0x07,       //   report count 7
    0x09, 0x01,       //   usage 1
    0xB1, 0x02,       //   feature, variable
    0xC0,             // end
};

QByteArray upperHex(unsigned value, int width)
{
    return QByteArray::number(value, 16).toUpper().rightJustified(width, '0');
}

} // namespace

QByteArray reportDescriptor()
{
    return QByteArray(reinterpret_cast<const char *>(descriptorBytes), sizeof descriptorBytes);
}

DeviceTree::DeviceTree(int usbPort, int hidrawNumber)
    : m_port("1-" + QByteArray::number(usbPort))
    , m_node("hidraw" + QByteArray::number(hidrawNumber))
{
}

QByteArray DeviceTree::nodePath() const
{
    return "/dev/" + m_node;
}

QByteArray DeviceTree::physicalPath() const
{
    return "usb-0000:00:14.0-" + m_port.mid(2) + "/input1";
}

std::vector<DevicePath> DeviceTree::chain() const
{
    const QByteArray usb = "/devices/pci0000:00/0000:00:14.0/usb1/" + m_port;
    const QByteArray interface = usb + '/' + m_port + ":1.1";
    const QByteArray hid = interface + "/0003:" + upperHex(receiverVendor, 4) + ':' +
                           upperHex(receiverProduct, 4) + '.' + m_port.mid(2).rightJustified(4, '0');
    return {{usb, "usb", "usb_device"},
            {interface, "usb", "usb_interface"},
            {hid, "hid", {}},
            {hid + "/hidraw/" + m_node, "hidraw", {}}};
}

QByteArray DeviceTree::description(dev_t node) const
{
    const std::vector<DevicePath> devices = chain();
    const QByteArray product =
        upperHex(receiverVendor, 4).toLower() + '/' + upperHex(receiverProduct, 4) + "/110";
    const QByteArray hidDevice = devices[2].path.mid(devices[2].path.lastIndexOf('/') + 1);
    const QByteArray majorNumber = QByteArray::number(major(node));
    const QByteArray minorNumber = QByteArray::number(minor(node));

    QByteArray text =
        "P: " + devices[0].path + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: PRODUCT=" + product +
        "\nE: BUSNUM=001\nE: DEVNUM=00" + m_port.mid(2) +
        "\nA: idVendor=" + upperHex(receiverVendor, 4).toLower() +
        "\\n\nA: idProduct=" + upperHex(receiverProduct, 4) +
        "\\n\nA: bcdDevice=0110\\n\nA: manufacturer=RadioCo\\n\nA: product=2.4G Receiver\\n\n\n";
    text += "P: " + devices[1].path + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\nE: INTERFACE=3/0/0" +
            "\nA: bInterfaceNumber=01\\n\nA: bInterfaceClass=03\\n\n\n";
    text += "P: " + devices[2].path +
            "\nE: SUBSYSTEM=hid\nE: DRIVER=hid-generic\nE: HID_ID=0003:" + upperHex(receiverVendor, 8) + ':' +
            upperHex(receiverProduct, 8) + "\nE: HID_NAME=" + receiverName +
            "\nE: HID_PHYS=" + physicalPath() +
            "\nE: HID_UNIQ=\nH: report_descriptor=" + reportDescriptor().toHex().toUpper() + "\n\n";
    // No N: line: the node itself is ours. Its device number must be true for lookups by number.
    text += "P: " + devices[3].path + "\nE: SUBSYSTEM=hidraw\nE: DEVNAME=" + nodePath() +
            "\nE: MAJOR=" + majorNumber + "\nE: MINOR=" + minorNumber + "\nA: dev=" + majorNumber + ':' +
            minorNumber + "\nL: device=../../../" + hidDevice + "\n";
    return text;
}

} // namespace mevo::lab
