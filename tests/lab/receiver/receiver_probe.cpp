// Finds and reads the receiver through hidapi and follows it through libudev, one line of output for each
// thing that it sees. Commands (enumerate, feature HEX, identity, descriptors, quit) come from the command
// line, one an argument, and then from standard input.

#include <hidapi/hidapi.h>
#include <libudev.h>
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr unsigned short vendor = 0x258A;
constexpr unsigned short product = 0x1016;
constexpr unsigned short usagePages[] = {0x000D, 0xFF00};

std::string hex(const unsigned char *bytes, int length)
{
    std::string text;
    char pair[4];
    for (int i = 0; i < length; ++i) {
        std::snprintf(pair, sizeof pair, " %02x", bytes[i]);
        text += pair;
    }
    return text;
}

void say(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

class Probe
{
public:
    void enumerate()
    {
        std::string line = "entries";
        hid_device_info *list = hid_enumerate(vendor, product);
        for (const hid_device_info *entry = list; entry; entry = entry->next) {
            char text[64];
            std::snprintf(text, sizeof text, " %04x:%x@", unsigned(entry->usage_page),
                          unsigned(entry->usage));
            line += text + std::string(entry->path);
        }
        hid_free_enumeration(list);
        say(line);
    }

    void open()
    {
        hid_device_info *list = hid_enumerate(vendor, product);
        for (const hid_device_info *entry = list; entry; entry = entry->next) {
            for (int i = 0; i < 2; ++i) {
                if (entry->usage_page == usagePages[i] && entry->usage == 1 && !m_handles[i])
                    m_handles[i] = hid_open_path(entry->path);
            }
        }
        hid_free_enumeration(list);
        for (hid_device *handle : m_handles) {
            if (handle)
                hid_set_nonblocking(handle, 1);
        }
        say(m_handles[0] && m_handles[1] ? "opened" : "not opened");
    }

    void close()
    {
        for (hid_device *&handle : m_handles) {
            if (handle)
                hid_close(handle);
            handle = nullptr;
        }
        say("closed");
    }

    void read()
    {
        for (int i = 0; i < 2; ++i) {
            unsigned char report[64];
            int length = 0;
            while (m_handles[i] && (length = hid_read(m_handles[i], report, sizeof report)) > 0)
                say((i == 0 ? "input" : "command") + hex(report, length));
            if (length < 0 && !m_lost) {
                m_lost = true;
                say("lost");
            }
        }
    }

    void udevEvent(udev_monitor *monitor)
    {
        udev_device *device = udev_monitor_receive_device(monitor);
        if (!device)
            return;
        const std::string action = udev_device_get_action(device);
        say(action + ' ' + udev_device_get_subsystem(device) + ' ' + udev_device_get_devnode(device));
        udev_device_unref(device);
        if (action == "remove")
            close();
        else if (!m_handles[0])
            open();
        m_lost = false;
    }

    /// False at the end.
    bool command(const std::string &line)
    {
        std::istringstream words(line);
        std::string name;
        words >> name;
        if (name == "quit")
            return false;
        if (name == "enumerate") {
            enumerate();
        } else if (name == "descriptors") {
            const std::filesystem::directory_iterator folder("/proc/self/fd");
            say("descriptors " + std::to_string(std::distance(begin(folder), end(folder))));
        } else if (name == "feature") {
            std::vector<unsigned char> bytes;
            for (unsigned value; words >> std::hex >> value;)
                bytes.push_back(static_cast<unsigned char>(value));
            const int result =
                m_handles[1] ? hid_send_feature_report(m_handles[1], bytes.data(), bytes.size()) : -2;
            say("feature " + std::to_string(result));
        } else if (name == "identity") {
            const unsigned char request[8] = {0x05, 0x2C};
            unsigned char reply[16] = {};
            hid_send_feature_report(m_handles[1], request, sizeof request);
            const int length = hid_read_timeout(m_handles[0], reply, sizeof reply, 2000);
            say("identity" + hex(reply, length));
        }
        return true;
    }

private:
    hid_device *m_handles[2] = {};
    bool m_lost = false;
};

} // namespace

int main(int argc, char *argv[])
{
    hid_init();
    udev *context = udev_new();
    udev_monitor *monitor = udev_monitor_new_from_netlink(context, "udev");
    udev_monitor_filter_add_match_subsystem_devtype(monitor, "hidraw", nullptr);
    udev_monitor_enable_receiving(monitor);
    Probe probe;
    probe.open();
    say("ready");

    std::string input;
    for (int i = 1; i < argc; ++i)
        probe.command(argv[i]);
    for (bool running = true; running;) {
        pollfd descriptors[] = {{STDIN_FILENO, POLLIN, 0}, {udev_monitor_get_fd(monitor), POLLIN, 0}};
        poll(descriptors, 2, 1);
        if (descriptors[1].revents & POLLIN)
            probe.udevEvent(monitor);
        if (descriptors[0].revents & (POLLIN | POLLHUP)) {
            char buffer[4096];
            const ssize_t length = read(STDIN_FILENO, buffer, sizeof buffer);
            if (length <= 0)
                break;
            input.append(buffer, size_t(length));
            for (size_t end; running && (end = input.find('\n')) != std::string::npos;
                 input.erase(0, end + 1))
                running = probe.command(input.substr(0, end));
        }
        probe.read();
    }
    probe.close();
    hid_exit();
    udev_monitor_unref(monitor);
    udev_unref(context);
}
