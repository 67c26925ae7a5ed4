#include "MVSettingsDlg.h"

SaverSettings::SaverSettings()
    : boidmodel(0),
      boidcount(10),
      fish_red(true),
      fish_blue(true),
      fish_stripe(true),
      fish_yell_blu(true),
      fish_dot(true),
      fish_big_grey(true),
      fish_big_red(true),
      fish_manta(true),
      bird_gull(true),
      fishcount(10),
      camerapos(0),
      cameraspeed(4),
      camerafix_top(30),
      camerafix_bottom(30),
      skytype(0),
      soundOn(true) {}
