#pragma once

/// Marks a class of the support layer that stays visible in the delivered library.
#define ORBELO_PUBLIC __attribute__((visibility("default")))
