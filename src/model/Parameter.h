// The service's 96 high-level audio-processing parameters. The numbering is fixed: it is the
// alphabetical order of the database column names, records keep their values in maps ordered by
// it, and every admissible-parameter set and setter table is written in these numbers. Note that
// the column names are not in strict byte order everywhere (72 "virtual_bass_mix_frequency"
// comes before 73 "virtual_bass_mix_freq_high"): the numbers below are the authority.
#pragma once

#include <bitset>
#include <cstdint>
#include <initializer_list>
#include <set>

namespace korvi {

enum Parameter : int32_t {
    AUDIO_OPTIMIZER_ENABLE = 0,
    AUDIO_OPTIMIZER_FREQUENCY = 1,
    AUDIO_OPTIMIZER_GAIN_L = 2,
    AUDIO_OPTIMIZER_GAIN_LS = 3,
    AUDIO_OPTIMIZER_GAIN_R = 4,
    AUDIO_OPTIMIZER_GAIN_RS = 5,
    BASS_ENHANCER_BOOST = 6,
    BASS_ENHANCER_CUTOFF_FREQUENCY = 7,
    BASS_ENHANCER_ENABLE = 8,
    BASS_ENHANCER_WIDTH = 9,
    BASS_EXTRACTION_CUTOFF_FREQUENCY = 10,
    BASS_EXTRACTION_ENABLE = 11,
    BASS_MBDRC_ENABLE = 12,
    BASS_MBDRC_TUNING = 13,
    CALIBRATION_BOOST = 14,
    COMPLEX_EQUALIZER_ENABLE = 15,
    COMPLEX_EQUALIZER_TUNING_LEFT = 16,
    COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND = 17,
    COMPLEX_EQUALIZER_TUNING_RIGHT = 18,
    COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND = 19,
    CUSTOM_DRC_METADATA = 20,
    DIALOG_ENHANCER_AMOUNT = 21,
    DIALOG_ENHANCER_DUCKING = 22,
    DIALOG_ENHANCER_ENABLE = 23,
    GEQ_FREQUENCY = 24,
    GEQ_GAIN = 25,
    GRAPHIC_EQUALIZER_ENABLE = 26,
    HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE = 27,
    HEARING_PROTECTION_ATTENUATION_ATTACK_TIME = 28,
    HEARING_PROTECTION_ATTENUATION_RELEASE_TIME = 29,
    HEARING_PROTECTION_ENABLE = 30,
    HEARING_PROTECTION_RMS_ATTENUATION_TARGET = 31,
    HEARING_PROTECTION_RMS_AVERAGING_TIME_WIN_LEN = 32,
    HEIGHT_FILTER_MODE = 33,
    IEQ_AMOUNT = 34,
    IEQ_ENABLE = 35,
    IEQ_FREQUENCY = 36,
    IEQ_ID = 37,
    IEQ_TARGET = 38,
    MI_ADAPTIVE_VIRTUALIZER_STEERING_ENABLE = 39,
    MI_DV_LEVELER_STEERING_ENABLE = 40,
    MI_IEQ_STEERING_ENABLE = 41,
    MI_SURROUND_COMPRESSOR_STEERING_ENABLE = 42,
    MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE = 43,
    ORIENTATION = 44,
    OUTPUT_CHANNELS = 45,
    OUTPUT_MIX_MATRIX = 46,
    PEAK_VALUE = 47,
    REGULATOR_DISTORTION_SLOPE = 48,
    REGULATOR_ENABLE = 49,
    REGULATOR_FREQUENCY = 50,
    REGULATOR_ISOLATED_BAND = 51,
    REGULATOR_OVERDRIVE = 52,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT = 53,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND = 54,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT = 55,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND = 56,
    REGULATOR_SIBILANCE_SUPPRESS_ENABLE = 57,
    REGULATOR_SPEAKER_DIST_ENABLE = 58,
    REGULATOR_STRESS_AMOUNT = 59,
    REGULATOR_THRESHOLD_HIGH = 60,
    REGULATOR_THRESHOLD_LOW = 61,
    REGULATOR_TIMBRE_PRESERVATION = 62,
    REVERB_SUPPRESSION_AMOUNT = 63,
    REVERB_SUPPRESSION_ENABLE = 64,
    SURROUND_BOOST = 65,
    SURROUND_DECODER_ENABLE = 66,
    VIRTUAL_BASS_BLEND_LINEAR_GAIN = 67,
    VIRTUAL_BASS_COMPRESSOR_TUNING = 68,
    VIRTUAL_BASS_ENABLE = 69,
    VIRTUAL_BASS_HARMGAINS = 70,
    VIRTUAL_BASS_HYBGAINS = 71,
    VIRTUAL_BASS_MIX_FREQUENCY = 72,
    VIRTUAL_BASS_MIX_FREQ_HIGH = 73,
    VIRTUAL_BASS_MIX_FREQ_LOW = 74,
    VIRTUAL_BASS_MODE = 75,
    VIRTUAL_BASS_OVERALL_GAIN = 76,
    VIRTUAL_BASS_ROLLOFF_GAIN = 77,
    VIRTUAL_BASS_SLOPE_GAIN = 78,
    VIRTUAL_BASS_SRC_FREQ_HIGH = 79,
    VIRTUAL_BASS_SRC_FREQ_LOW = 80,
    VIRTUAL_BASS_SUBGAINS = 81,
    VIRTUAL_BASS_TYPE = 82,
    VIRTUALIZER_ENABLE = 83,
    VIRTUALIZER_FRONT_SPEAKER_ANGLE = 84,
    VIRTUALIZER_HEIGHT_SPEAKER_ANGLE = 85,
    VIRTUALIZER_START_BAND = 86,
    VIRTUALIZER_SURROUND_SPEAKER_ANGLE = 87,
    VOLMAX_BOOST = 88,
    VOLUME_LEVELER_AMOUNT = 89,
    VOLUME_LEVELER_COMPRESSOR_ENABLE = 90,
    VOLUME_LEVELER_ENABLE = 91,
    VOLUME_LEVELER_IN_TARGET = 92,
    VOLUME_LEVELER_OUT_TARGET = 93,
    VOLUME_MODELER_CALIBRATION = 94,
    VOLUME_MODELER_ENABLE = 95,
};

inline constexpr int kParameterCount = 96;

// Database column name of every parameter, indexed by its number.
inline constexpr const char* kParameterNames[kParameterCount] = {
    "audio_optimizer_enable",
    "audio_optimizer_frequency",
    "audio_optimizer_gain_l",
    "audio_optimizer_gain_ls",
    "audio_optimizer_gain_r",
    "audio_optimizer_gain_rs",
    "bass_enhancer_boost",
    "bass_enhancer_cutoff_frequency",
    "bass_enhancer_enable",
    "bass_enhancer_width",
    "bass_extraction_cutoff_frequency",
    "bass_extraction_enable",
    "bass_mbdrc_enable",
    "bass_mbdrc_tuning",
    "calibration_boost",
    "complex_equalizer_enable",
    "complex_equalizer_tuning_left",
    "complex_equalizer_tuning_left_surround",
    "complex_equalizer_tuning_right",
    "complex_equalizer_tuning_right_surround",
    "custom_drc_metadata",
    "dialog_enhancer_amount",
    "dialog_enhancer_ducking",
    "dialog_enhancer_enable",
    "geq_frequency",
    "geq_gain",
    "graphic_equalizer_enable",
    "headphone_virtualizer_steerer_source_distance",
    "hearing_protection_attenuation_attack_time",
    "hearing_protection_attenuation_release_time",
    "hearing_protection_enable",
    "hearing_protection_rms_attenuation_target",
    "hearing_protection_rms_averaging_time_win_len",
    "height_filter_mode",
    "ieq_amount",
    "ieq_enable",
    "ieq_frequency",
    "ieq_id",
    "ieq_target",
    "mi_adaptive_virtualizer_steering_enable",
    "mi_dv_leveler_steering_enable",
    "mi_ieq_steering_enable",
    "mi_surround_compressor_steering_enable",
    "mi_virtualizer_binaural_steering_enable",
    "orientation",
    "output_channels",
    "output_mix_matrix",
    "peak_value",
    "regulator_distortion_slope",
    "regulator_enable",
    "regulator_frequency",
    "regulator_isolated_band",
    "regulator_overdrive",
    "regulator_sibilance_suppress_amounts_left",
    "regulator_sibilance_suppress_amounts_left_surround",
    "regulator_sibilance_suppress_amounts_right",
    "regulator_sibilance_suppress_amounts_right_surround",
    "regulator_sibilance_suppress_enable",
    "regulator_speaker_dist_enable",
    "regulator_stress_amount",
    "regulator_threshold_high",
    "regulator_threshold_low",
    "regulator_timbre_preservation",
    "reverb_suppression_amount",
    "reverb_suppression_enable",
    "surround_boost",
    "surround_decoder_enable",
    "virtual_bass_blend_linear_gain",
    "virtual_bass_compressor_tuning",
    "virtual_bass_enable",
    "virtual_bass_harmgains",
    "virtual_bass_hybgains",
    "virtual_bass_mix_frequency",
    "virtual_bass_mix_freq_high",
    "virtual_bass_mix_freq_low",
    "virtual_bass_mode",
    "virtual_bass_overall_gain",
    "virtual_bass_rolloff_gain",
    "virtual_bass_slope_gain",
    "virtual_bass_src_freq_high",
    "virtual_bass_src_freq_low",
    "virtual_bass_subgains",
    "virtual_bass_type",
    "virtualizer_enable",
    "virtualizer_front_speaker_angle",
    "virtualizer_height_speaker_angle",
    "virtualizer_start_band",
    "virtualizer_surround_speaker_angle",
    "volmax_boost",
    "volume_leveler_amount",
    "volume_leveler_compressor_enable",
    "volume_leveler_enable",
    "volume_leveler_in_target",
    "volume_leveler_out_target",
    "volume_modeler_calibration",
    "volume_modeler_enable",
};

// The one stored record that admits each parameter. VIRTUAL_BASS_TYPE belongs to none: only the
// device-level view accepts it. Every admissible-parameter set is built from this table.
enum ParameterOwner : int32_t {
    OWNER_TUNING,
    OWNER_PROFILE,
    OWNER_PROFILE_ENDPOINT,
    OWNER_IEQ_PRESET,
    OWNER_GEQ_PRESET,
    OWNER_NONE,
};

inline constexpr ParameterOwner kParameterOwners[kParameterCount] = {
    OWNER_TUNING,  // 0 audio_optimizer_enable
    OWNER_TUNING,  // 1 audio_optimizer_frequency
    OWNER_TUNING,  // 2 audio_optimizer_gain_l
    OWNER_TUNING,  // 3 audio_optimizer_gain_ls
    OWNER_TUNING,  // 4 audio_optimizer_gain_r
    OWNER_TUNING,  // 5 audio_optimizer_gain_rs
    OWNER_TUNING,  // 6 bass_enhancer_boost
    OWNER_TUNING,  // 7 bass_enhancer_cutoff_frequency
    OWNER_PROFILE_ENDPOINT,  // 8 bass_enhancer_enable
    OWNER_TUNING,  // 9 bass_enhancer_width
    OWNER_TUNING,  // 10 bass_extraction_cutoff_frequency
    OWNER_TUNING,  // 11 bass_extraction_enable
    OWNER_TUNING,  // 12 bass_mbdrc_enable
    OWNER_TUNING,  // 13 bass_mbdrc_tuning
    OWNER_PROFILE_ENDPOINT,  // 14 calibration_boost
    OWNER_TUNING,  // 15 complex_equalizer_enable
    OWNER_TUNING,  // 16 complex_equalizer_tuning_left
    OWNER_TUNING,  // 17 complex_equalizer_tuning_left_surround
    OWNER_TUNING,  // 18 complex_equalizer_tuning_right
    OWNER_TUNING,  // 19 complex_equalizer_tuning_right_surround
    OWNER_PROFILE,  // 20 custom_drc_metadata
    OWNER_PROFILE_ENDPOINT,  // 21 dialog_enhancer_amount
    OWNER_PROFILE_ENDPOINT,  // 22 dialog_enhancer_ducking
    OWNER_PROFILE_ENDPOINT,  // 23 dialog_enhancer_enable
    OWNER_GEQ_PRESET,  // 24 geq_frequency
    OWNER_GEQ_PRESET,  // 25 geq_gain
    OWNER_PROFILE_ENDPOINT,  // 26 graphic_equalizer_enable
    OWNER_PROFILE_ENDPOINT,  // 27 headphone_virtualizer_steerer_source_distance
    OWNER_PROFILE_ENDPOINT,  // 28 hearing_protection_attenuation_attack_time
    OWNER_PROFILE_ENDPOINT,  // 29 hearing_protection_attenuation_release_time
    OWNER_PROFILE_ENDPOINT,  // 30 hearing_protection_enable
    OWNER_PROFILE_ENDPOINT,  // 31 hearing_protection_rms_attenuation_target
    OWNER_PROFILE_ENDPOINT,  // 32 hearing_protection_rms_averaging_time_win_len
    OWNER_TUNING,  // 33 height_filter_mode
    OWNER_PROFILE_ENDPOINT,  // 34 ieq_amount
    OWNER_PROFILE_ENDPOINT,  // 35 ieq_enable
    OWNER_IEQ_PRESET,  // 36 ieq_frequency
    OWNER_IEQ_PRESET,  // 37 ieq_id
    OWNER_IEQ_PRESET,  // 38 ieq_target
    OWNER_PROFILE,  // 39 mi_adaptive_virtualizer_steering_enable
    OWNER_PROFILE,  // 40 mi_dv_leveler_steering_enable
    OWNER_PROFILE,  // 41 mi_ieq_steering_enable
    OWNER_PROFILE,  // 42 mi_surround_compressor_steering_enable
    OWNER_PROFILE_ENDPOINT,  // 43 mi_virtualizer_binaural_steering_enable
    OWNER_TUNING,  // 44 orientation
    OWNER_TUNING,  // 45 output_channels
    OWNER_TUNING,  // 46 output_mix_matrix
    OWNER_PROFILE_ENDPOINT,  // 47 peak_value
    OWNER_TUNING,  // 48 regulator_distortion_slope
    OWNER_TUNING,  // 49 regulator_enable
    OWNER_TUNING,  // 50 regulator_frequency
    OWNER_TUNING,  // 51 regulator_isolated_band
    OWNER_TUNING,  // 52 regulator_overdrive
    OWNER_TUNING,  // 53 regulator_sibilance_suppress_amounts_left
    OWNER_TUNING,  // 54 regulator_sibilance_suppress_amounts_left_surround
    OWNER_TUNING,  // 55 regulator_sibilance_suppress_amounts_right
    OWNER_TUNING,  // 56 regulator_sibilance_suppress_amounts_right_surround
    OWNER_TUNING,  // 57 regulator_sibilance_suppress_enable
    OWNER_TUNING,  // 58 regulator_speaker_dist_enable
    OWNER_TUNING,  // 59 regulator_stress_amount
    OWNER_TUNING,  // 60 regulator_threshold_high
    OWNER_TUNING,  // 61 regulator_threshold_low
    OWNER_TUNING,  // 62 regulator_timbre_preservation
    OWNER_PROFILE,  // 63 reverb_suppression_amount
    OWNER_PROFILE,  // 64 reverb_suppression_enable
    OWNER_PROFILE_ENDPOINT,  // 65 surround_boost
    OWNER_PROFILE_ENDPOINT,  // 66 surround_decoder_enable
    OWNER_TUNING,  // 67 virtual_bass_blend_linear_gain
    OWNER_TUNING,  // 68 virtual_bass_compressor_tuning
    OWNER_PROFILE_ENDPOINT,  // 69 virtual_bass_enable
    OWNER_TUNING,  // 70 virtual_bass_harmgains
    OWNER_TUNING,  // 71 virtual_bass_hybgains
    OWNER_TUNING,  // 72 virtual_bass_mix_frequency
    OWNER_TUNING,  // 73 virtual_bass_mix_freq_high
    OWNER_TUNING,  // 74 virtual_bass_mix_freq_low
    OWNER_TUNING,  // 75 virtual_bass_mode
    OWNER_TUNING,  // 76 virtual_bass_overall_gain
    OWNER_TUNING,  // 77 virtual_bass_rolloff_gain
    OWNER_TUNING,  // 78 virtual_bass_slope_gain
    OWNER_TUNING,  // 79 virtual_bass_src_freq_high
    OWNER_TUNING,  // 80 virtual_bass_src_freq_low
    OWNER_TUNING,  // 81 virtual_bass_subgains
    OWNER_NONE,  // 82 virtual_bass_type
    OWNER_PROFILE_ENDPOINT,  // 83 virtualizer_enable
    OWNER_TUNING,  // 84 virtualizer_front_speaker_angle
    OWNER_TUNING,  // 85 virtualizer_height_speaker_angle
    OWNER_PROFILE_ENDPOINT,  // 86 virtualizer_start_band
    OWNER_TUNING,  // 87 virtualizer_surround_speaker_angle
    OWNER_PROFILE_ENDPOINT,  // 88 volmax_boost
    OWNER_PROFILE_ENDPOINT,  // 89 volume_leveler_amount
    OWNER_TUNING,  // 90 volume_leveler_compressor_enable
    OWNER_PROFILE_ENDPOINT,  // 91 volume_leveler_enable
    OWNER_PROFILE_ENDPOINT,  // 92 volume_leveler_in_target
    OWNER_PROFILE_ENDPOINT,  // 93 volume_leveler_out_target
    OWNER_TUNING,  // 94 volume_modeler_calibration
    OWNER_PROFILE,  // 95 volume_modeler_enable
};

// The parameters owned by any of owners, for the static admissible-parameter sets. It reads only
// the constant table above, so it is safe to call while other static sets are being built.
std::set<Parameter> parametersOwnedBy(std::initializer_list<ParameterOwner> owners);

// The same set as one flag per parameter number, for look-ups on hot paths.
std::bitset<kParameterCount> parameterFlags(const std::set<Parameter>& parameters);

// True for the numbers 0 to 95.
inline constexpr bool isValidParameter(int number) {
    return number >= 0 && number < kParameterCount;
}

// The column name of a parameter; aborts on a number outside 0-95 (a programming error).
const char* parameterName(Parameter parameter);

}  // namespace korvi
