qn740_test(app MainMenuScreens)
qn740_test(app SmallMessages)
