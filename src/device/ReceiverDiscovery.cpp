#include "device/ReceiverDiscovery.h"

#include <QSet>
#include <QStringList>

namespace mevo {

namespace {

constexpr int kPathLimit = 256;
constexpr char kInterfacePathText[] = "hid#vid_258a&pid_1016&mi_01&col01";

/// Counts receivers over the entries of one enumeration.
class ReceiverCount
{
public:
    int add(const HidEntry &entry)
    {
        // Paths that spell the interface out are compared in lower case only, as the HID library gives them.
        const bool spelledOut = entry.path.toLower().contains("hid#vid_");
        if (spelledOut ? entry.path.contains(kInterfacePathText) : isNewDigitizer(entry)) {
            ++m_count;
        }
        return m_count;
    }

private:
    bool isNewDigitizer(const HidEntry &entry)
    {
        if (entry.vendorId != kReceiverVendor || entry.productId != kReceiverProduct ||
            entry.usagePage != kDigitizerPage || entry.usage != kReceiverUsage ||
            m_paths.contains(entry.path)) {
            return false;
        }
        m_paths.insert(entry.path);
        return true;
    }

    int m_count = 0;
    QSet<QByteArray> m_paths;
};

bool passes(quint16 filter, quint16 value)
{
    return filter == 0 || filter == value;
}

} // namespace

FoundCollection findCollection(const std::vector<HidEntry> &entries, const CollectionFilter &filter)
{
    FoundCollection found;
    ReceiverCount receivers;
    for (const HidEntry &entry : entries) {
        if (receivers.add(entry) > 1) {
            found.secondReceiver = true;
            break;
        }
        if (passes(filter.vendorId, entry.vendorId) && passes(filter.productId, entry.productId) &&
            passes(filter.usagePage, entry.usagePage) && passes(filter.usage, entry.usage)) {
            found.path = entry.path.left(kPathLimit);
        }
    }
    return found;
}

bool isReceiverName(const QString &deviceName)
{
    return deviceName.contains(QLatin1String("HID#VID_258A&PID_1016&MI_01&Col02"), Qt::CaseInsensitive);
}

int topLevelCollections(const QByteArray &reportDescriptor)
{
    constexpr int kLongItem = 0xFE;
    constexpr int kCollection = 0xA0;
    constexpr int kEndCollection = 0xC0;
    int depth = 0;
    int collections = 0;
    for (int i = 0; i < reportDescriptor.size();) {
        const int prefix = static_cast<unsigned char>(reportDescriptor.at(i));
        if (prefix == kLongItem) {
            const int length =
                i + 1 < reportDescriptor.size() ? static_cast<unsigned char>(reportDescriptor.at(i + 1)) : 0;
            i += 3 + length;
            continue;
        }
        const int tag = prefix & 0xFC;
        if (tag == kCollection && depth++ == 0) {
            ++collections;
        } else if (tag == kEndCollection && depth > 0) {
            --depth;
        }
        const int size = prefix & 0x03;
        i += 1 + (size == 3 ? 4 : size);
    }
    return collections;
}

QStringList hidDeviceNames(quint16 vendor, quint16 product, int interfaceNumber, int collections)
{
    QString name = QString::asprintf("HID#VID_%04X&PID_%04X", vendor, product);
    if (interfaceNumber >= 0) {
        name += QString::asprintf("&MI_%02X", interfaceNumber);
    }
    if (collections < 2) {
        return {name};
    }
    QStringList names;
    for (int i = 1; i <= collections; ++i) {
        names.append(name + QString::asprintf("&Col%02X", i));
    }
    return names;
}

} // namespace mevo
