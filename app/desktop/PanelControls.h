#pragma once

// What a character's own panel is made of, in one include.
#include "app/desktop/ButtonGrid.h"
#include "app/desktop/PanelButton.h"
#include "app/desktop/PanelCheckBox.h"
#include "app/desktop/PanelField.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PanelScroll.h"
#include "app/desktop/PanelSlider.h"
#include "app/desktop/PanelText.h"
#include "app/desktop/PanelToggle.h"
#include "app/desktop/SegmentBar.h"
