// Before Qt, whose `signals` is a word of glib's.
#include <umockdev.h>

#include "MockDevices.h"

MockDevices::MockDevices()
    : m_testbed(umockdev_testbed_new())
{
    if (umockdev_in_mock_environment() == FALSE) {
        qFatal("umockdev's library is not loaded: run this test through ctest, or under umockdev-wrapper");
    }
}

MockDevices::~MockDevices()
{
    g_object_unref(m_testbed);
}

QString MockDevices::realPath(const QString &path) const
{
    gchar *root = umockdev_testbed_get_root_dir(m_testbed);
    QString real = QString::fromLocal8Bit(root) + path;
    g_free(root);
    return real;
}
