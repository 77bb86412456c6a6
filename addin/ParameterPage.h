#pragma once

#include <string>

/// The page of settings that the driver has, as the XML document that the platform builds its
/// form from: UTF-8, CR LF. It guides the form only; values are checked where they are used.
std::string parameterPage();
