#pragma once
// Reports on orders: the orders of a grant with the grant's budget (TiskGrantTabl, the
// archive's "Čerpání") and the orders whose goods lines hold a text (BuildCerpani, for the
// stock screens' search). Both write one HTML table through BuildObjLJ.

#include "core/buildobjlj.h"

#include <QString>

class DbConnection;

// path: the report file; font: the user's size ("0" or empty is 1). False with out.Error()
// when the file cannot be written, or with *error when the server refused.
bool TiskGrantTabl(BuildObjLJ &out, DbConnection &centre, DbConnection &granty, const QString &path,
                   const QString &grant, const QString &font, QString *error);
bool BuildCerpani(BuildObjLJ &out, DbConnection &centre, const QString &path, const QString &text,
                  const QString &font, QString *error);
// The drawdown report's file in the order folder: "Čerpání-<grant>.html".
QString CerpaniPath(const QString &folder, const QString &grant);
