#pragma once

namespace android {

// The system properties of the front fingerprint filter.

inline constexpr char kFilterAreaProperty[] = "ro.zqaft.tpfp.filter_area";
inline constexpr char kDisableAbtProperty[] = "persist.zqaft.disable_abt";
inline constexpr char kFoldDisplayProperty[] = "ro.config.zq_fold_disp";

}  // namespace android
