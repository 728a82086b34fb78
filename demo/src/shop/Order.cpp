#include "Order.h"

#include "../base/Texts.h"

namespace orivex::demo {

Order latestOrder() {
  return {.number = "2024 0611 8842",
          .status = text("运输中", "On its way"),
          .arrival = text("预计明天 18:00 前送达", "Arrives tomorrow before 18:00"),
          .currency = text("¥", "€"),
          .total = text("1,017.00", "132.00"),
          .lines = {{.picture = "/orivex/demo/headphones.svg",
                     .name = text("云感降噪耳机", "Cloud headphones"),
                     .description = text("雾蓝 · 一年质保", "Mist blue · one-year warranty"),
                     .amount = text("699.00", "89.00")},
                    {.picture = "/orivex/demo/lamp.svg",
                     .name = text("晨光阅读灯", "Dawn reading lamp"),
                     .description = text("暖白 · 三档调光", "Warm white · three levels"),
                     .amount = text("159.00", "21.50"),
                     .quantity = 2}}};
}

}  // namespace orivex::demo
