#include "receiver/TestBed.h"

#include <umockdev.h>

#include <QDir>
#include <QLoggingCategory>

namespace mevo::lab {

namespace {

bool succeeded(gboolean result, GError *error, const char *what)
{
    if (error) {
        qWarning("%s: %s", what, error->message);
        g_error_free(error);
        return false;
    }
    return result;
}

} // namespace

TestBed::TestBed()
    : m_testbed(umockdev_testbed_new())
{
    gchar *root = umockdev_testbed_get_root_dir(m_testbed);
    m_root = root;
    g_free(root);
    QDir().mkpath(QString::fromLocal8Bit(m_root + "/dev"));
    QDir().mkpath(QString::fromLocal8Bit(m_root + "/sys"));
}

TestBed::~TestBed()
{
    g_object_unref(m_testbed);
}

bool TestBed::add(const QByteArray &description)
{
    GError *error = nullptr;
    const gboolean added = umockdev_testbed_add_from_string(m_testbed, description.constData(), &error);
    return succeeded(added, error, "cannot add the device");
}

void TestBed::remove(const QByteArray &sysPath)
{
    umockdev_testbed_remove_device(m_testbed, ("/sys" + sysPath).constData());
}

bool TestBed::attach(const QByteArray &node, _UMockdevIoctlBase *handler)
{
    GError *error = nullptr;
    const gboolean attached = umockdev_testbed_attach_ioctl(m_testbed, node.constData(), handler, &error);
    return succeeded(attached, error, "cannot attach to the node");
}

void TestBed::detach(const QByteArray &node)
{
    GError *error = nullptr;
    succeeded(umockdev_testbed_detach_ioctl(m_testbed, node.constData(), &error), error,
              "cannot detach from the node");
}

} // namespace mevo::lab
