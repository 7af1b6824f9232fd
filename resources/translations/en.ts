<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>AsrLanMenu</name>
    <message>
        <source>普通话(腾讯版)</source>
        <translation>Mandarin (Tencent)</translation>
    </message>
    <message>
        <source>粤语(腾讯版)</source>
        <translation>Cantonese (Tencent)</translation>
    </message>
    <message>
        <source>普通话+医疗(腾讯版)</source>
        <translation>Mandarin, medical (Tencent)</translation>
    </message>
    <message>
        <source>自识别方言(腾讯版)</source>
        <translation>Chinese dialects (Tencent)</translation>
    </message>
    <message>
        <source>英语(腾讯版)</source>
        <translation>English (Tencent)</translation>
    </message>
    <message>
        <source>日语(腾讯版)</source>
        <translation>Japanese (Tencent)</translation>
    </message>
    <message>
        <source>普通话(百度版)</source>
        <translation>Mandarin (Baidu)</translation>
    </message>
    <message>
        <source>粤语(百度版)</source>
        <translation>Cantonese (Baidu)</translation>
    </message>
    <message>
        <source>四川话(百度版)</source>
        <translation>Sichuanese (Baidu)</translation>
    </message>
    <message>
        <source>英语(百度版)</source>
        <translation>English (Baidu)</translation>
    </message>
    <message>
        <source>普通话(讯飞版)</source>
        <translation>Mandarin (XunFei)</translation>
    </message>
    <message>
        <source>英语(讯飞版)</source>
        <translation>English (XunFei)</translation>
    </message>
    <message>
        <source>使用讯飞语音输入法</source>
        <translation>XunFei voice input method</translation>
    </message>
    <message>
        <source>使用搜狗语音输入法</source>
        <translation>Sogou voice input method</translation>
    </message>
    <message>
        <source>使用自定义语音输入法</source>
        <translation>Custom voice input method</translation>
    </message>
</context>
<context>
    <name>AudioRecorder</name>
    <message>
        <source>正在使用电脑自带麦克风,如不能正常语音识别,请尝试在设置中选择其它麦克风或启用/禁用立体声混音！</source>
        <translation>The computer&apos;s own microphone is in use. If speech is not recognised, choose another microphone in the settings, or switch stereo mix on or off.</translation>
    </message>
    <message>
        <source>打开麦克风设备失败，请查看设备管理器中显示设备是否正常，如是Windows 10系统，请先确认麦克风权限是否已打开!</source>
        <translation>The microphone cannot be opened. Please check that it is connected and working and that the system lets programs use it.</translation>
    </message>
</context>
<context>
    <name>CPatialResultDialog</name>
    <message>
        <source>识别中的文字</source>
        <translation>Text being recognised</translation>
    </message>
</context>
<context>
    <name>DeviceCommands</name>
    <message>
        <source>您电脑已连接多个本公司产品，暂不能同时支持，请选择一款，在安装配套软件后使用！</source>
        <translation>More than one of our receivers is connected. Only one can be used at a time: please keep one and install the software that came with it.</translation>
    </message>
    <message>
        <source>请尝试将设备接到到其它USB口再打开软件，如一直显示此信息，请与供货商联系(</source>
        <translation>Please plug the receiver into another USB port and start the program again. If this message stays, please contact your supplier (</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>有文字未能输入，已保留在菜单的“未送达的文字”中。</source>
        <translation>Some text could not be typed; it waits in the menu under “Undelivered texts”.</translation>
    </message>
    <message>
        <source>未送达的文字(%1)</source>
        <translation>Undelivered texts (%1)</translation>
    </message>
    <message>
        <source>没有可以输入的窗口，请先把光标放到要输入的地方。</source>
        <translation>No window takes text now; please put the cursor where the text should go.</translation>
    </message>
    <message>
        <source>灵犀听写系统.lnk</source>
        <translation>MEVOInput.lnk</translation>
    </message>
    <message>
        <source>自动启动软件</source>
        <translation>Start automatically</translation>
    </message>
    <message>
        <source>下次开机是否自动启动语音软件?</source>
        <translation>Start the voice input program at the next login?</translation>
    </message>
    <message>
        <source>是</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>返回</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>否</source>
        <translation>No</translation>
    </message>
    <message>
        <source>未连接外部网络，该功能无法实现！</source>
        <translation>No network: this function is not available.</translation>
    </message>
    <message>
        <source>未连接外部网络</source>
        <translation>No network connection</translation>
    </message>
    <message>
        <source>错误</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>请确认插上设备后再重启运行!</source>
        <translation>Please plug in the receiver and start the program again.</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>请选择语音识别引擎</source>
        <translation>Speech recognition engine</translation>
    </message>
    <message>
        <source>正在启动讯飞麦克风窗口，请稍候，检测过程中可关闭其它提示信息窗口！</source>
        <translation>Opening the XunFei microphone window. Please wait; other messages may be closed meanwhile.</translation>
    </message>
    <message>
        <source>正在首次启动讯飞麦克风窗口过程中，识别检测时间稍长，请稍候，检测过程中可忽略提示信息或窗口！</source>
        <translation>Opening the XunFei microphone window for the first time. This takes a moment; please ignore messages and windows meanwhile.</translation>
    </message>
    <message>
        <source>已打开语音输入识别功能！</source>
        <translation>Voice input is on.</translation>
    </message>
    <message>
        <source>关闭语音输入识别</source>
        <translation>Turn voice input off</translation>
    </message>
    <message>
        <source>打开语音输入识别</source>
        <translation>Turn voice input on</translation>
    </message>
    <message>
        <source>3秒后会关闭语音输入识别功能！</source>
        <translation>Voice input turns off in 3 seconds.</translation>
    </message>
    <message>
        <source>菜单</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>打开的麦克风窗口可设置语音命令或语音搜索的功能;<byte value="xd"/> 当用讯飞语音输入法时，打开的讯飞麦克风窗口可设置方言等功能</source>
        <translation>Opens the microphone window, where voice commands and voice search can be chosen;<byte value="xd"/> with XunFei&apos;s input method its own window, where dialects can be chosen</translation>
    </message>
    <message>
        <source>麦克风</source>
        <translation>Microphone</translation>
    </message>
    <message>
        <source>点击选择语言</source>
        <translation>Click to choose the language</translation>
    </message>
    <message>
        <source>语言</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>点击打开虚拟键盘</source>
        <translation>Click to open the on-screen keyboard</translation>
    </message>
    <message>
        <source>虚拟键盘</source>
        <translation>On-screen keyboard</translation>
    </message>
    <message>
        <source>手写</source>
        <translation>Handwriting</translation>
    </message>
    <message>
        <source>点击打开设置语音命令词</source>
        <translation>Click to edit the voice commands</translation>
    </message>
    <message>
        <source>语音命令词</source>
        <translation>Voice commands</translation>
    </message>
    <message>
        <source>点击打开翻译窗口</source>
        <translation>Click to open the translation window</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>Translation</translation>
    </message>
    <message>
        <source>点击打开设置窗口</source>
        <translation>Click to open the settings</translation>
    </message>
    <message>
        <source>设置</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>语音输入系统托盘图标</source>
        <translation>MEVOInput voice input</translation>
    </message>
    <message>
        <source>C盘空间太小，如不清理可能影响软件运行！</source>
        <translation>The disk is almost full. Please free some space, or the program may not work properly.</translation>
    </message>
    <message>
        <source>隐藏此菜单</source>
        <translation>Hide this menu</translation>
    </message>
    <message>
        <source>显示水平界面</source>
        <translation>Show the bar horizontally</translation>
    </message>
    <message>
        <source>显示垂直界面</source>
        <translation>Show the bar vertically</translation>
    </message>
    <message>
        <source>隐藏主界面</source>
        <translation>Hide the bar</translation>
    </message>
    <message>
        <source>默认窗口显示位置</source>
        <translation>Move the bar to its default place</translation>
    </message>
    <message>
        <source>关闭语音识别</source>
        <translation>Turn voice input off</translation>
    </message>
    <message>
        <source>使用说明</source>
        <translation>User manual</translation>
    </message>
    <message>
        <source>退出软件</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>灵犀听写</source>
        <translation>MEVOInput</translation>
    </message>
    <message>
        <source>已连接外部网络！</source>
        <translation>Network connected.</translation>
    </message>
    <message>
        <source>显示界面</source>
        <translation>Show the bar</translation>
    </message>
    <message>
        <source>隐藏界面</source>
        <translation>Hide the bar</translation>
    </message>
    <message>
        <source>语音翻译模式已打开</source>
        <translation>Voice translation mode is on</translation>
    </message>
    <message>
        <source>语音映射词设置</source>
        <translation>Edit the voice commands</translation>
    </message>
    <message>
        <source>初始化数据错误，请升级安装最新版本软件或联系客服解决！</source>
        <translation>The data could not be set up. Please install the latest version or contact support.</translation>
    </message>
    <message>
        <source>软件已设置成功，将自动退出，请重新启动软件！</source>
        <translation>The settings are in place. The program will close; please start it again.</translation>
    </message>
    <message>
        <source>版本更新</source>
        <translation>New version</translation>
    </message>
    <message>
        <source>已有最新版本软件，请下载更新到最新版本！</source>
        <translation>There is a newer version. Please download it and update.</translation>
    </message>
    <message>
        <source>已有最新版本，请下载更新软件后再使用！</source>
        <translation>There is a newer version. Please download it and update before you go on.</translation>
    </message>
    <message>
        <source>已超出各接口每天限制使用次数，如继续使用，请选择使用讯飞输入法或搜狗语音输入法(f001)!</source>
        <translation>Today's use of the recognition services has reached its limit. To go on, choose the XunFei or the Sogou voice input method (f001).</translation>
    </message>
    <message>
        <source>已超出各接口每天限制使用次数,请24小时后再使用(f001)！</source>
        <translation>Today's use of the recognition services has reached its limit. Please try again in 24 hours (f001).</translation>
    </message>
    <message>
        <source>超出限量</source>
        <translation>Limit reached</translation>
    </message>
    <message>
        <source>使用讯飞语音输入法</source>
        <translation>Use XunFei voice input</translation>
    </message>
    <message>
        <source>使用搜狗语音输入法</source>
        <translation>Use Sogou voice input</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>立即更新</source>
        <translation>Update now</translation>
    </message>
    <message>
        <source>暂时不更新</source>
        <translation>Not now</translation>
    </message>
    <message>
        <source>灵犀听写更新</source>
        <translation>MEVOInput Update</translation>
    </message>
    <message>
        <source>新版本软件已提供，点击此处可以在线更新</source>
        <translation>A new version is available. Click here to update.</translation>
    </message>
    <message>
        <source>无法连接更新服务器，请稍后再试！</source>
        <translation>The update server cannot be reached. Please try again later.</translation>
    </message>
    <message>
        <source>灵犀听写提示!</source>
        <translation>MEVOInput</translation>
    </message>
    <message>
        <source>确认要取消下载？</source>
        <translation>Cancel the download?</translation>
    </message>
    <message>
        <source>提示!</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>请通过系统的软件管理器更新本软件。</source>
        <translation>Please update this program with your system&apos;s package manager.</translation>
    </message>
    <message>
        <source>更新程序没有安装，请从下载页面获取新版本。</source>
        <translation>The updater is not installed. Please get the new version from the download page.</translation>
    </message>
    <message>
        <source>（未安装）</source>
        <translation> (not installed)</translation>
    </message>
    <message>
        <source>下载</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>正在下载 %1 过程中，请稍候......</source>
        <translation>Downloading %1, please wait...</translation>
    </message>
    <message>
        <source>取消下载</source>
        <translation>Cancel download</translation>
    </message>
    <message>
        <source>Attention!</source>
        <translation>Attention!</translation>
    </message>
    <message>
        <source>将安装讯飞输入法，需手动点击，安装完可能会提示需要重启电脑！</source>
        <translation>XunFei&apos;s input method will be installed; please follow its installer. It may ask for a restart of the computer.</translation>
    </message>
    <message>
        <source>没有安装，因没有设置强制使用该语音输入，将自动切换到其它语音识别接口！</source>
        <translation> is not installed, and its use is not forced: another speech recognition takes over.</translation>
    </message>
    <message>
        <source>%1没有安装，服务器也没有提供下载地址。请自行安装，或在设置中指定其程序路径！</source>
        <translation>%1 is not installed, and the server names no address to download it from. Please install it, or name its program in the settings.</translation>
    </message>
    <message>
        <source>没有找到自定义语音输入法的程序 %1，请在设置中重新选择！</source>
        <translation>The program of the custom input method, %1, is not there. Please choose it again in the settings.</translation>
    </message>
    <message>
        <source>没有找到搜狗语音输入法的程序，也无法连接服务器下载。请安装后再选择，或在设置中指定其程序路径！</source>
        <translation>Sogou&apos;s voice input is not there, and no server is in reach to download it from. Please install it first, or name its program in the settings.</translation>
    </message>
    <message>
        <source>没有找到讯飞语音输入法的程序，也无法连接服务器下载。请安装后再选择，或在设置中指定其程序路径！</source>
        <translation>XunFei&apos;s voice input is not there, and no server is in reach to download it from. Please install it first, or name its program in the settings.</translation>
    </message>
    <message>
        <source>启动第三方语音输入</source>
        <translation>Starting a voice input method</translation>
    </message>
    <message>
        <source>同意：允许自动调用第三方语音输入法，包括自动下载与安装，以及修改其快捷键设置；
不同意：只在点击麦克风按钮时才启动第三方语音输入法，不修改其设置。</source>
        <translation>Agree: the input method may be started by itself, fetched and installed, and its hot key may be set;
Disagree: it is started by a click on the microphone button alone, and its settings stay as they are.</translation>
    </message>
    <message>
        <source>同意</source>
        <translation>Agree</translation>
    </message>
    <message>
        <source>不同意</source>
        <translation>Disagree</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>点击&apos;下载&apos;按钮将安装</source>
        <translation>Press &apos;Download&apos; to install </translation>
    </message>
    <message>
        <source>(支持离线语音识别),安装时请按提示操作！</source>
        <translation> (recognises speech without a network too); please follow its installer.</translation>
    </message>
    <message>
        <source>,安装时请按提示操作！</source>
        <translation>; please follow its installer.</translation>
    </message>
    <message>
        <source>暂不下载</source>
        <translation>Not now</translation>
    </message>
    <message>
        <source>讯飞输入法</source>
        <translation>XunFei&apos;s input method</translation>
    </message>
    <message>
        <source>必须重启电脑才能正常使用讯飞输入法！</source>
        <translation>The computer must be restarted before XunFei&apos;s input method can be used.</translation>
    </message>
    <message>
        <source>立即重启</source>
        <translation>Restart now</translation>
    </message>
    <message>
        <source>稍后重启</source>
        <translation>Restart later</translation>
    </message>
    <message>
        <source>初始化软件成功，如有问题，请尝试重新打开软件！</source>
        <translation>The program is set up. In case of trouble please start it once more.</translation>
    </message>
    <message>
        <source>请重新安装语音手写板软件<byte value="xd"/>或点击查看如何设置（点击快捷键设置-&gt;常规功能键-&gt;打勾启用语音输入快捷键，并设为F6）</source>
        <translation>Please install the software of the voice tablet once more<byte value="xd"/>or look how the input method is set (hot keys -&gt; general function keys -&gt; tick the hot key of voice input and make it F6)</translation>
    </message>
    <message>
        <source>查看如何设置</source>
        <translation>Show how</translation>
    </message>
    <message>
        <source>打开设置窗口</source>
        <translation>Open the settings</translation>
    </message>
    <message>
        <source>以后再设置</source>
        <translation>Later</translation>
    </message>
    <message>
        <source>重启电脑该功能才生效;	
取消：点击此按钮，将退出并保持以前配置</source>
        <translation>This takes effect after a restart of the computer;	
Cancel: leaves everything as it was</translation>
    </message>
    <message>
        <source>自动重启电脑</source>
        <translation>Restart the computer</translation>
    </message>
    <message>
        <source>手动重启电脑</source>
        <translation>I restart it myself</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>无法修改讯飞输入法的配置：%1</source>
        <translation>The settings of XunFei&apos;s input method cannot be changed: %1</translation>
    </message>
    <message>
        <source>没有找到讯飞输入法的程序 %1！</source>
        <translation>The program %1 of XunFei&apos;s input method is not there.</translation>
    </message>
</context>
<context>
    <name>MicTipDialog</name>
    <message>
        <source>语音打字模式已打开</source>
        <translation>Voice typing mode is on</translation>
    </message>
    <message>
        <source>点击进入语音打字模式</source>
        <translation>Click for voice typing</translation>
    </message>
    <message>
        <source>语音命令词模式已打开</source>
        <translation>Voice command mode is on</translation>
    </message>
    <message>
        <source>点击进入语音命令词模式</source>
        <translation>Click for voice commands</translation>
    </message>
    <message>
        <source>语音搜索模式已打开</source>
        <translation>Voice search mode is on</translation>
    </message>
    <message>
        <source>点击进入语音搜素模式</source>
        <translation>Click for voice search</translation>
    </message>
    <message>
        <source>麦克风</source>
        <translation>Microphone</translation>
    </message>
</context>
<context>
    <name>MouseSettings</name>
    <message>
        <source>读取DongleID时没有发现设备!</source>
        <translation>No receiver was found to read the ID from.</translation>
    </message>
    <message>
        <source>麦克风</source>
        <translation>Microphone</translation>
    </message>
    <message>
        <source>麦克风(F6)</source>
        <translation>Microphone (F6)</translation>
    </message>
    <message>
        <source>语音打字</source>
        <translation>Voice typing</translation>
    </message>
    <message>
        <source>语音搜索</source>
        <translation>Voice search</translation>
    </message>
    <message>
        <source>语音命令</source>
        <translation>Voice command</translation>
    </message>
    <message>
        <source>语音翻译</source>
        <translation>Voice translation</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>回桌面</source>
        <translation>Show desktop</translation>
    </message>
    <message>
        <source>前进</source>
        <translation>Forward</translation>
    </message>
    <message>
        <source>后退</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>长按中键上滚</source>
        <translation>Hold middle button: scroll up</translation>
    </message>
    <message>
        <source>长按中键下滚</source>
        <translation>Hold middle button: scroll down</translation>
    </message>
</context>
<context>
    <name>Notifications</name>
    <message>
        <source>灵犀听写</source>
        <translation>MEVOInput</translation>
    </message>
</context>
<context>
    <name>QToolTips</name>
    <message>
        <source>灵犀听写提示窗</source>
        <translation>MEVOInput message</translation>
    </message>
</context>
<context>
    <name>Relay_Speech::BaiduSpeech</name>
    <message>
        <source>
 (错误码:3301)语音质量可能过差，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系！ (错误码:3301)


提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
 (error 3301) The sound may be too poor. Please check that the default microphone is the right one, or switch stereo mix on and start the program again. If the error stays, try another computer; if it is the same there, please contact our support. (error 3301)


Tip:
keep the pointer on this window and it stays open</translation>
    </message>
    <message>
        <source>
 (错误码:3314)语音长度太短, 下次语音识别将切换语音通道，如仍不行，先确认系统是否允许打开麦克风，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系！


提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
 (error 3314) The speech was too short. The next one uses the other sound channel. If that does not help, check that the system lets programs use the microphone and that the default microphone is the right one, or switch stereo mix on and start the program again. If the error stays, try another computer; if it is the same there, please contact our support.


Tip:
keep the pointer on this window and it stays open</translation>
    </message>
    <message>
        <source>(错误码:3304)请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>(error 3304) Please switch to XunFei&apos;s or Sogou&apos;s voice input method, or contact your supplier.







Tip:
keep the pointer on this window and it stays open</translation>
    </message>
    <message>
        <source> (错误码:3304)将切换到讯飞接口，如还有问题，请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation> (error 3304) Switching to the XunFei engine. If the problem stays, please switch to XunFei&apos;s or Sogou&apos;s voice input method, or contact your supplier.







Tip:
keep the pointer on this window and it stays open</translation>
    </message>
    <message>
        <source>
(错误码:3307) 语音质量可能过差，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
(error 3307) The sound may be too poor. Please check that the default microphone is the right one, or switch stereo mix on and start the program again. If the error stays, try another computer; if it is the same there, please contact our support.







Tip:
keep the pointer on this window and it stays open</translation>
    </message>
    <message>
        <source> (错误码:3305)如连接提示此窗口，请手动切换讯飞语音输入法或搜狗语音输入法或与产品供应商联系！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation> (error 3305) If this window keeps appearing, please switch to XunFei&apos;s or Sogou&apos;s voice input method, or contact your supplier.







Tip:
keep the pointer on this window and it stays open</translation>
    </message>
    <message>
        <source>将切换到讯飞接口，如有问题，请手动切换讯飞或搜狗语音输入法或与产品供应商联系！ (错误码:3305)







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>Switching to the XunFei engine. If there is a problem, please switch to XunFei&apos;s or Sogou&apos;s voice input method, or contact your supplier. (error 3305)







Tip:
keep the pointer on this window and it stays open</translation>
    </message>
    <message>
        <source>
   如连续多次提示此窗口，建议尝试手动切换其它识别接口！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
   If this window appears several times in a row, please choose another recognition engine.







Tip:
keep the pointer on this window and it stays open</translation>
    </message>
</context>
<context>
    <name>Session</name>
    <message>
        <source>当天语音使用识别量已超限! 如当天继续使用，建议切到讯飞语音输入法或搜狗语音输入法</source>
        <translation>Today&apos;s recognition limit is used up. To go on today, please switch to XunFei&apos;s or Sogou&apos;s voice input method.</translation>
    </message>
</context>
<context>
    <name>TencentReply</name>
    <message>
        <source>腾讯语音识别错误返回信息：(如无法解决，请与供货商联系，鼠标放在此窗口上，该窗口不会消失):
</source>
        <translation>Tencent speech recognition answered with an error (if it stays, please contact your supplier; this window stays open while the pointer is on it):
</translation>
    </message>
</context>
<context>
    <name>XunFeiLanguages</name>
    <message>
        <source>长沙话</source>
        <translation>Changsha dialect</translation>
    </message>
    <message>
        <source>东北话</source>
        <translation>Northeastern dialect</translation>
    </message>
    <message>
        <source>甘肃话</source>
        <translation>Gansu dialect</translation>
    </message>
    <message>
        <source>广东话</source>
        <translation>Cantonese</translation>
    </message>
    <message>
        <source>杭州话</source>
        <translation>Hangzhou dialect</translation>
    </message>
    <message>
        <source>河北话</source>
        <translation>Hebei dialect</translation>
    </message>
    <message>
        <source>合肥话</source>
        <translation>Hefei dialect</translation>
    </message>
    <message>
        <source>河南话</source>
        <translation>Henan dialect</translation>
    </message>
    <message>
        <source>客家话</source>
        <translation>Hakka</translation>
    </message>
    <message>
        <source>闽南话</source>
        <translation>Southern Min</translation>
    </message>
    <message>
        <source>南昌话</source>
        <translation>Nanchang dialect</translation>
    </message>
    <message>
        <source>南京话</source>
        <translation>Nanjing dialect</translation>
    </message>
    <message>
        <source>山东话</source>
        <translation>Shandong dialect</translation>
    </message>
    <message>
        <source>上海话</source>
        <translation>Shanghainese</translation>
    </message>
    <message>
        <source>陕西话</source>
        <translation>Shaanxi dialect</translation>
    </message>
    <message>
        <source>四川话</source>
        <translation>Sichuanese</translation>
    </message>
    <message>
        <source>台湾话</source>
        <translation>Taiwanese</translation>
    </message>
    <message>
        <source>太原话</source>
        <translation>Taiyuan dialect</translation>
    </message>
    <message>
        <source>天津话</source>
        <translation>Tianjin dialect</translation>
    </message>
    <message>
        <source>武汉话</source>
        <translation>Wuhan dialect</translation>
    </message>
    <message>
        <source>云南话</source>
        <translation>Yunnan dialect</translation>
    </message>
    <message>
        <source>宁夏话</source>
        <translation>Ningxia dialect</translation>
    </message>
    <message>
        <source>贵州话</source>
        <translation>Guizhou dialect</translation>
    </message>
    <message>
        <source>皖北话</source>
        <translation>Northern Anhui dialect</translation>
    </message>
    <message>
        <source>普通话</source>
        <translation>Mandarin</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>English</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>Japanese</translation>
    </message>
    <message>
        <source>韩语</source>
        <translation>Korean</translation>
    </message>
    <message>
        <source>俄语</source>
        <translation>Russian</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>French</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>Spanish</translation>
    </message>
</context>
<context>
    <name>mevo::SessionMachine</name>
    <message>
        <source>已关闭语音识别功能！</source>
        <translation>Voice input is turned off.</translation>
    </message>
    <message>
        <source>松开按键太快！请长按松开后再正式语音输入！</source>
        <translation>The key was released too soon. Hold it while you speak.</translation>
    </message>
</context>
<context>
    <name>UndeliveredDialog</name>
    <message>
        <source>未送达的文字</source>
        <translation>Undelivered texts</translation>
    </message>
    <message>
        <source>选中一条，再把光标放到要输入的窗口，然后点“输入”。</source>
        <translation>Select a text, put the cursor into the window that it is for, then click “Type”.</translation>
    </message>
    <message>
        <source>输入</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>全部删除</source>
        <translation>Remove all</translation>
    </message>
</context>
<context>
    <name>CADShowDlg</name>
    <message>
        <source>灵犀听写信息提示框</source>
        <translation>MEVOInput notice</translation>
    </message>
    <message>
        <source>您有一条新消息，点击查看：</source>
        <translation>You have a new message. Click to read it:</translation>
    </message>
</context>
<context>
    <name>MyUpdateChecker</name>
    <message>
        <source>文件已存在</source>
        <translation>the file exists already</translation>
    </message>
    <message>
        <source>不能保存文件 %1: %2.</source>
        <translation>The file %1 cannot be saved: %2.</translation>
    </message>
    <message>
        <source>文件太大</source>
        <translation>the file is too large</translation>
    </message>
    <message>
        <source>文件  %1 不存在.</source>
        <translation>The file %1 does not exist.</translation>
    </message>
    <message>
        <source>下载错误: %1.</source>
        <translation>Download error: %1.</translation>
    </message>
    <message>
        <source>校验和不符</source>
        <translation>the checksum is wrong</translation>
    </message>
    <message>
        <source>更新文件没有有效的数字签名，已拒绝安装。</source>
        <translation>The update has no valid signature and was refused.</translation>
    </message>
    <message>
        <source>V%d.%02d完整安装版已提供，须在线更新！<byte value="xd"/>
请点击&apos;立即更新&apos;按钮</source>
        <translation>The full version V%d.%02d is available and must be installed.<byte value="xd"/>
Please click &apos;Update now&apos;.</translation>
    </message>
    <message>
        <source>V%d.%02d完整安装版已提供在线更新！<byte value="xd"/>
是否要更新?</source>
        <translation>The full version V%d.%02d is available.<byte value="xd"/>
Update now?</translation>
    </message>
    <message>
        <source>V%d.%02d版本已提供，须在线更新,<byte value="xd"/>
请点击&apos;立即更新&apos;按钮</source>
        <translation>Version V%d.%02d is available and must be installed.<byte value="xd"/>
Please click &apos;Update now&apos;.</translation>
    </message>
    <message>
        <source>V%d.%02d版本已提供在线更新,<byte value="xd"/>
是否要更新?</source>
        <translation>Version V%d.%02d is available.<byte value="xd"/>
Update now?</translation>
    </message>
    <message>
        <source>（更新文件没有数字签名，无法验证其来源。）</source>
        <translation>(The update is not signed: where it comes from cannot be verified.)</translation>
    </message>
</context>
<context>
    <name>UpdateProgressDialog</name>
    <message>
        <source>灵犀听写在线更新</source>
        <translation>MEVOInput Online Update</translation>
    </message>
    <message>
        <source>取消下载</source>
        <translation>Cancel download</translation>
    </message>
    <message>
        <source><byte value="xd"/>
               正在下载更新文件:%1,请稍候......               <byte value="xd"/></source>
        <translation><byte value="xd"/>
               Downloading the update %1, please wait...               <byte value="xd"/></translation>
    </message>
</context>
<context>
    <name>ThirdPartyVoiceInput</name>
    <message>
        <source>Impossible to save the file %1: %2.</source>
        <translation>Impossible to save the file %1: %2.</translation>
    </message>
    <message>
        <source>File %1 is not present.</source>
        <translation>File %1 is not present.</translation>
    </message>
    <message>
        <source>Download failed: %1.</source>
        <translation>Download failed: %1.</translation>
    </message>
    <message>
        <source>文件已存在</source>
        <translation>the file exists already</translation>
    </message>
    <message>
        <source>文件太大</source>
        <translation>the file is too large</translation>
    </message>
</context>
</TS>
