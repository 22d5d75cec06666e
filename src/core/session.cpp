#include "core/session.h"

SessionRecord &Session()
{
    static SessionRecord record;
    return record;
}

QString GetFiltrGrant() { return Session().UserFiltrGrant; }
QString GetIpServer() { return Session().IpServer; }
QString GetMysqlDb() { return Session().MysqlDb; }

QString ProgramVersion()
{
    return QStringLiteral("%1.%2.%3")
        .arg(FONDARIX_VERSION_MAJOR)
        .arg(FONDARIX_VERSION_MINOR)
        .arg(FONDARIX_VERSION_PATCH);
}
