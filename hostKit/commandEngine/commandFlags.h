#pragma once

/** Flags that several commands have: short names, and long ones. */
///@{
inline constexpr char kELFeditFlag[] = "-e";
inline constexpr char kELFeditFlagLong[] = "-edit";
inline constexpr char kELFqueryFlag[] = "-q";
inline constexpr char kELFqueryFlagLong[] = "-query";

inline constexpr char kELFparentFlag[] = "-p";
inline constexpr char kELFparentFlagLong[] = "-parent";
inline constexpr char kELFexistsFlag[] = "-ex";
inline constexpr char kELFexistsFlagLong[] = "-exists";
inline constexpr char kELFvisibleFlag[] = "-vis";
inline constexpr char kELFvisibleFlagLong[] = "-visible";
inline constexpr char kELFenableFlag[] = "-en";
inline constexpr char kELFenableFlagLong[] = "-enable";
inline constexpr char kELFwidthFlag[] = "-w";
inline constexpr char kELFwidthFlagLong[] = "-width";
inline constexpr char kELFheightFlag[] = "-h";
inline constexpr char kELFheightFlagLong[] = "-height";
inline constexpr char kELFannotationFlag[] = "-ann";
inline constexpr char kELFannotationFlagLong[] = "-annotation";

inline constexpr char kELFcolumnWidthFlag[] = "-cw";
inline constexpr char kELFcolumnWidthFlagLong[] = "-columnWidth";
inline constexpr char kELFcolumnAttachFlag[] = "-cat";
inline constexpr char kELFcolumnAttachFlagLong[] = "-columnAttach";
inline constexpr char kELFcolumnAlignFlag[] = "-cal";
inline constexpr char kELFcolumnAlignFlagLong[] = "-columnAlign";

inline constexpr char kELFlabelFlag[] = "-l";
inline constexpr char kELFlabelFlagLong[] = "-label";
inline constexpr char kELFextraLabelFlag[] = "-el";
inline constexpr char kELFextraLabelFlagLong[] = "-extraLabel";
inline constexpr char kELFchangeCommandFlag[] = "-cc";
inline constexpr char kELFchangeCommandFlagLong[] = "-changeCommand";
inline constexpr char kELFdragCommandFlag[] = "-dc";
inline constexpr char kELFdragCommandFlagLong[] = "-dragCommand";
inline constexpr char kELFvalueFlag[] = "-v";
inline constexpr char kELFvalueFlagLong[] = "-value";
inline constexpr char kELFminValueFlag[] = "-min";
inline constexpr char kELFminValueFlagLong[] = "-minValue";
inline constexpr char kELFmaxValueFlag[] = "-max";
inline constexpr char kELFmaxValueFlagLong[] = "-maxValue";
inline constexpr char kELFimageFlag[] = "-i";
inline constexpr char kELFimageFlagLong[] = "-image";
///@}
