#pragma once

#include "ipmi/SelView.hpp"

/// An event record as the translator asks it, with the index that links it to its sensor's record.
class SELEntry : public ipmi::SelView {
public:
    using SelView::SelView;

    /// Generator id, channel and LUN, and sensor number in one number; that of SDREntry for the same sensor.
    int getIndex() const { return (generator() * 256 + channelAndLun()) * 256 + sensorNumber(); }
};
