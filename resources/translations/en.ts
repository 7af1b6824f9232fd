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
        <source>本次运行还没有输入文字</source>
        <translation>No text has been typed in this run yet</translation>
    </message>
    <message>
        <source>本次运行输入%1次，从松开按键到出现文字：一半在%2毫秒以内，95%在%3毫秒以内；其中收到识别结果之后：%4毫秒，%5毫秒</source>
        <translation>%1 texts in this run. From the release of the key to the text: half within %2 ms, 95% within %3 ms; of that after the recogniser’s answer: %4 ms, %5 ms</translation>
    </message>
    <message>
        <source>有文字未能输入，已保留在菜单的“未送达的文字”中。</source>
        <translation>Some text could not be typed; it waits in the menu under “Undelivered texts”.</translation>
    </message>
    <message>
        <source>原来的窗口已失去焦点，没有发送按键。</source>
        <translation>Another window has the focus; the keys of the word were not sent.</translation>
    </message>
    <message>
        <source>有文字未能输入，已保留在菜单的“未送达的文字”中；已超过%1条，最早的一条已删除。</source>
        <translation>Some text could not be typed; it waits in the menu under “Undelivered texts”. There were more than %1, and the oldest has been removed.</translation>
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
        <source>当前已是最新版本！</source>
        <translation>This is the newest version.</translation>
    </message>
    <message>
        <source>更新服务器没有给出可用的版本信息，请稍后再试！</source>
        <translation>The update server tells no usable version. Please try again later.</translation>
    </message>
    <message>
        <source>没有网络连接，无法检查更新！</source>
        <translation>There is no network connection to check for updates.</translation>
    </message>
    <message>
        <source>正在检查更新，请稍候！</source>
        <translation>Checking for updates. Please wait.</translation>
    </message>
    <message>
        <source>更新提示已经打开，请在其中选择！</source>
        <translation>The question about the update is open already. Please answer it.</translation>
    </message>
    <message>
        <source>正在下载更新文件，请稍候！</source>
        <translation>The update is being downloaded. Please wait.</translation>
    </message>
    <message>
        <source>更新文件已下载，稍后将自动安装！</source>
        <translation>The update has been downloaded and will be installed shortly.</translation>
    </message>
    <message>
        <source>上次的更新没有下载完成，程序没有更新。</source>
        <translation>The last update was not downloaded to its end. The program is as it was.</translation>
    </message>
    <message>
        <source>上次的更新（%1）没有安装，程序没有更新。</source>
        <translation>The last update (%1) was not installed. The program is as it was.</translation>
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
        <source>今日语音识别次数已用完，已自动切换到腾讯语音识别！</source>
        <translation>Today's speech recognitions are used up; Tencent's recognition has taken over.</translation>
    </message>
    <message>
        <source>已选择搜狗语音输入法，将在下次启动软件或插入设备时设置并生效！</source>
        <translation>Sogou's voice input method is chosen. It is set up, and in force, from the next start or plugging-in on.</translation>
    </message>
    <message>
        <source>将自动重启软件，请稍候</source>
        <translation>The program restarts in a moment</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>重启电脑该功能才生效;	
取消：点击此按钮，将退出并保持以前配置</source>
        <translation>This takes effect after a restart of the computer.
Cancel leaves everything as it was.</translation>
    </message>
    <message>
        <source>自动重启电脑</source>
        <translation>Restart now</translation>
    </message>
    <message>
        <source>手动重启电脑</source>
        <translation>Restart later</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>没有找到声音控制面板，请在系统设置中打开！</source>
        <translation>No sound settings were found; open them in the system settings</translation>
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
        <source>无法修改讯飞输入法的配置：%1</source>
        <translation>The settings of XunFei&apos;s input method cannot be changed: %1</translation>
    </message>
    <message>
        <source>安装程序已下载，但没有程序能打开它：%1</source>
        <translation>The installer has been downloaded, but nothing here can open it: %1</translation>
    </message>
    <message>
        <source>没有找到讯飞输入法的程序 %1！</source>
        <translation>The program %1 of XunFei&apos;s input method is not there.</translation>
    </message>
    <message>
        <source>正在启动讯飞麦克风窗口，请稍候，检测过程中可关闭其它提示信息窗口！</source>
        <translation>Opening the XunFei microphone window. Please wait; other messages may be closed meanwhile.</translation>
    </message>
    <message>
        <source>该语音输入法没有可下载的安装程序！</source>
        <translation>There is no installer of this input method to download.</translation>
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
    <message>
        <source>中文</source>
        <translation>Chinese</translation>
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
        <source>另一个更新正在安装，请稍后再试。</source>
        <translation>Another update is being installed. Please try again later.</translation>
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
    <name>CommandWordDialog</name>
    <message>
        <source>语音键盘</source>
        <translation>Voice keyboard</translation>
    </message>
    <message>
        <source>请输入键盘字母或数字对应命令词,如:a;唉,提示:多个不同语音映射词用半角分号间隔</source>
        <translation>Spoken words for a letter or digit, e.g. a;eh. Separate several with ;</translation>
    </message>
    <message>
        <source>请输入键盘字母:如:a</source>
        <translation>The letter, e.g. a</translation>
    </message>
    <message>
        <source>输入语音映射词功能</source>
        <translation>Enter what the words do</translation>
    </message>
    <message>
        <source>拼音键盘</source>
        <translation>Pinyin keyboard</translation>
    </message>
    <message>
        <source>请输入拼音对应的中文字,如:昂,提示:多个不同语音映射词用半角分号间隔</source>
        <translation>Chinese characters of a syllable. Separate several with ;</translation>
    </message>
    <message>
        <source>请输入拼音字母:如:ang</source>
        <translation>The syllable, e.g. ang</translation>
    </message>
    <message>
        <source>输入语音映射词内容</source>
        <translation>Enter the content</translation>
    </message>
    <message>
        <source>网页</source>
        <translation>Web page</translation>
    </message>
    <message>
        <source>输入打开网页的语音映射词,如:打开百度;百度搜索,提示:多个不同语音映射词用半角分号间隔</source>
        <translation>Words that open a web page, e.g. open news;show news. Separate several with ;</translation>
    </message>
    <message>
        <source>输入网页地址:如:https://www.baidu.com</source>
        <translation>The address, e.g. https://www.baidu.com</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>File</translation>
    </message>
    <message>
        <source>请输入打开文件或程序的语音映射词,如:打开记事本,提示:多个不同语音映射词用半角分号间隔</source>
        <translation>Words that open a file or program, e.g. open notepad. Separate several with ;</translation>
    </message>
    <message>
        <source>请输入文件或程序地址:如:c:\windows\notepad.exe</source>
        <translation>The file or program, e.g. c:\windows\notepad.exe</translation>
    </message>
    <message>
        <source>文件夹</source>
        <translation>Folder</translation>
    </message>
    <message>
        <source>请输入打开常用目录的文件夹的语音映射词,如:我的文档,提示:多个不同语音映射词用半角分号间隔</source>
        <translation>Words that open a folder, e.g. my documents. Separate several with ;</translation>
    </message>
    <message>
        <source>请输入常用文件夹的路径:如:C:\</source>
        <translation>The folder, e.g. C:\</translation>
    </message>
    <message>
        <source>快捷键</source>
        <translation>Shortcut</translation>
    </message>
    <message>
        <source>请输入快捷键的语音映射词，提示：如多个语音映射词用半角分号间隔</source>
        <translation>Spoken words of the shortcut. Separate several with ;</translation>
    </message>
    <message>
        <source>常用短语</source>
        <translation>Phrase</translation>
    </message>
    <message>
        <source>请输入常用短语的语音映射词,如:家庭地址,提示:多个不同语音映射词用半角分号间隔</source>
        <translation>Spoken words of a phrase, e.g. home address. Separate several with ;</translation>
    </message>
    <message>
        <source>请输入常用短语的内容:如:美国华盛顿白宫,提示:也可以输入较长内容，如诗或歌词等</source>
        <translation>The phrase, e.g. an address. Longer texts such as poems are possible</translation>
    </message>
    <message>
        <source>有一个语音映射词是空的</source>
        <translation>One of the spoken words is empty</translation>
    </message>
    <message>
        <source>“%1”已经定义过，会执行“%2”</source>
        <translation>“%1” is taken already and runs “%2”</translation>
    </message>
    <message>
        <source>“%1”是切换语音模式的词</source>
        <translation>“%1” switches the voice mode</translation>
    </message>
    <message>
        <source>“%1”以直接执行的前缀“%2”开头</source>
        <translation>“%1” begins with the direct word “%2”</translation>
    </message>
    <message>
        <source>没有名为“%1”的按键</source>
        <translation>There is no key called “%1”</translation>
    </message>
    <message>
        <source>没有选择按键</source>
        <translation>No key is chosen</translation>
    </message>
    <message>
        <source>找不到文件“%1”</source>
        <translation>The file “%1” is not there</translation>
    </message>
    <message>
        <source>找不到文件夹“%1”</source>
        <translation>The folder “%1” is not there</translation>
    </message>
    <message>
        <source>不起作用</source>
        <translation>Never acts</translation>
    </message>
    <message>
        <source>部分不起作用</source>
        <translation>Acts in part</translation>
    </message>
    <message>
        <source>隐藏</source>
        <translation>Hidden</translation>
    </message>
    <message>
        <source>语音映射词</source>
        <translation>Spoken words</translation>
    </message>
    <message>
        <source>类型</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>功能</source>
        <translation>Action</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>语音映射词设置</source>
        <translation>Spoken command words</translation>
    </message>
    <message>
        <source>显示全部</source>
        <translation>Show all</translation>
    </message>
    <message>
        <source>待查询的语音映射词</source>
        <translation>Spoken word to look for</translation>
    </message>
    <message>
        <source>查询</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>上一个</source>
        <translation>Previous</translation>
    </message>
    <message>
        <source>下一个</source>
        <translation>Next</translation>
    </message>
    <message>
        <source>显示隐藏内容</source>
        <translation>Show hidden rows</translation>
    </message>
    <message>
        <source>加分号</source>
        <translation>Add ;</translation>
    </message>
    <message>
        <source>在光标处插入分号，用来分隔多个语音映射词</source>
        <translation>Inserts a semicolon at the cursor, which separates several spoken words</translation>
    </message>
    <message>
        <source>应用程序</source>
        <translation>Application</translation>
    </message>
    <message>
        <source>目录</source>
        <translation>Folder</translation>
    </message>
    <message>
        <source>增加</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>编辑</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>导入</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>导出</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>是</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>否</source>
        <translation>No</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>建议在增加前先查询有没有定义过，如重复定义语音映射词，
将执行最初定义的功能！</source>
        <translation>Better search first whether the words are taken already:
of words defined twice the first definition is the one that runs!</translation>
    </message>
    <message>
        <source>该类型状态下不能增加，将默认切换到网页类型下</source>
        <translation>Rows cannot be added here; the web pages are shown instead</translation>
    </message>
    <message>
        <source>输入语音映射词</source>
        <translation>Enter the spoken words</translation>
    </message>
    <message>
        <source>该类型状态下不能删除，请先切换到相关类型下！</source>
        <translation>Rows cannot be deleted here; please show their own type first!</translation>
    </message>
    <message>
        <source>确认删除吗？</source>
        <translation>Really delete it?</translation>
    </message>
    <message>
        <source>选择目录</source>
        <translation>Choose a folder</translation>
    </message>
    <message>
        <source>选择文件</source>
        <translation>Choose a file</translation>
    </message>
    <message>
        <source>没有发现匹配的语音映射词！</source>
        <translation>No spoken word matches!</translation>
    </message>
    <message>
        <source>是否要保存前面设置？</source>
        <translation>Save what was set before?</translation>
    </message>
    <message>
        <source>语音映射词没有保存，原来的文件没有改动。</source>
        <translation>The spoken words were not saved; the file is as it was.</translation>
    </message>
    <message>
        <source>上次对“%1”的修改没有保存，要恢复吗？</source>
        <translation>Changes to “%1” were not saved last time. Bring them back?</translation>
    </message>
    <message>
        <source>导出语音映射词</source>
        <translation>Export the spoken words</translation>
    </message>
    <message>
        <source>语音映射词(*.ini)</source>
        <translation>Spoken words (*.ini)</translation>
    </message>
    <message>
        <source>已导出到“%1”。</source>
        <translation>Exported to “%1”.</translation>
    </message>
    <message>
        <source>不能写入“%1”：%2</source>
        <translation>“%1” cannot be written: %2</translation>
    </message>
    <message>
        <source>导入语音映射词</source>
        <translation>Import spoken words</translation>
    </message>
    <message>
        <source>不能读取“%1”。</source>
        <translation>“%1” cannot be read.</translation>
    </message>
    <message>
        <source>导入了%1条，%2条已经有了，%3条不能识别。</source>
        <translation>%1 rows imported, %2 were there already, %3 are of no known type.</translation>
    </message>
    <message>
        <source>“%1”这一类型在这里不起作用</source>
        <translation>“%1” never acts here</translation>
    </message>
    <message>
        <source>“%1”没有保存，原来的文件没有改动。</source>
        <translation>“%1” was not saved; its file is as it was.</translation>
    </message>
</context>
<context>
    <name>SelectApplication</name>
    <message>
        <source>选择应用程序</source>
        <translation>Choose an application</translation>
    </message>
    <message>
        <source>应用程序列表一（本用户）</source>
        <translation>Applications 1 (this user)</translation>
    </message>
    <message>
        <source>应用程序列表二（所有用户）</source>
        <translation>Applications 2 (all users)</translation>
    </message>
    <message>
        <source>确认</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>TranslationLanguages</name>
    <message>
        <source>自动(auto)</source>
        <translation>Automatic(auto)</translation>
    </message>
    <message>
        <source>自动</source>
        <translation>Automatic</translation>
    </message>
    <message>
        <source>中文(zh)</source>
        <translation>Chinese(zh)</translation>
    </message>
    <message>
        <source>中文</source>
        <translation>Chinese</translation>
    </message>
    <message>
        <source>文言文(wyw)</source>
        <translation>Classical Chinese(wyw)</translation>
    </message>
    <message>
        <source>文言文</source>
        <translation>Classical Chinese</translation>
    </message>
    <message>
        <source>粤语(yue)</source>
        <translation>Cantonese(yue)</translation>
    </message>
    <message>
        <source>粤语</source>
        <translation>Cantonese</translation>
    </message>
    <message>
        <source>繁体(cht)</source>
        <translation>Traditional Chinese(cht)</translation>
    </message>
    <message>
        <source>繁体</source>
        <translation>Traditional Chinese</translation>
    </message>
    <message>
        <source>英语(en)</source>
        <translation>English(en)</translation>
    </message>
    <message>
        <source>英文</source>
        <translation>English</translation>
    </message>
    <message>
        <source>日语(jp)</source>
        <translation>Japanese(jp)</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>Japanese</translation>
    </message>
    <message>
        <source>韩语(kor)</source>
        <translation>Korean(kor)</translation>
    </message>
    <message>
        <source>韩语</source>
        <translation>Korean</translation>
    </message>
    <message>
        <source>法语(fra)</source>
        <translation>French(fra)</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>French</translation>
    </message>
    <message>
        <source>俄语(ru)</source>
        <translation>Russian(ru)</translation>
    </message>
    <message>
        <source>俄语</source>
        <translation>Russian</translation>
    </message>
    <message>
        <source>西班牙语(spa)</source>
        <translation>Spanish(spa)</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>Spanish</translation>
    </message>
    <message>
        <source>波兰语(pl)</source>
        <translation>Polish(pl)</translation>
    </message>
    <message>
        <source>波兰语</source>
        <translation>Polish</translation>
    </message>
    <message>
        <source>葡萄牙语(pt)</source>
        <translation>Portuguese(pt)</translation>
    </message>
    <message>
        <source>葡萄牙语</source>
        <translation>Portuguese</translation>
    </message>
    <message>
        <source>德语(de)</source>
        <translation>German(de)</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>German</translation>
    </message>
    <message>
        <source>泰语(th)</source>
        <translation>Thai(th)</translation>
    </message>
    <message>
        <source>泰语</source>
        <translation>Thai</translation>
    </message>
    <message>
        <source>捷克语(cs)</source>
        <translation>Czech(cs)</translation>
    </message>
    <message>
        <source>捷克语</source>
        <translation>Czech</translation>
    </message>
    <message>
        <source>阿拉伯语(ara)</source>
        <translation>Arabic(ara)</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>Arabic</translation>
    </message>
    <message>
        <source>越南语(vie)</source>
        <translation>Vietnamese(vie)</translation>
    </message>
    <message>
        <source>越南语</source>
        <translation>Vietnamese</translation>
    </message>
    <message>
        <source>意大利语(it)</source>
        <translation>Italian(it)</translation>
    </message>
    <message>
        <source>意大利语</source>
        <translation>Italian</translation>
    </message>
    <message>
        <source>希腊语(el)</source>
        <translation>Greek(el)</translation>
    </message>
    <message>
        <source>希腊语</source>
        <translation>Greek</translation>
    </message>
    <message>
        <source>荷兰语(nl)</source>
        <translation>Dutch(nl)</translation>
    </message>
    <message>
        <source>荷兰语</source>
        <translation>Dutch</translation>
    </message>
    <message>
        <source>丹麦语(dan)</source>
        <translation>Danish(dan)</translation>
    </message>
    <message>
        <source>丹麦语</source>
        <translation>Danish</translation>
    </message>
    <message>
        <source>瑞典语(swe)</source>
        <translation>Swedish(swe)</translation>
    </message>
    <message>
        <source>瑞典语</source>
        <translation>Swedish</translation>
    </message>
    <message>
        <source>芬兰语(fin)</source>
        <translation>Finnish(fin)</translation>
    </message>
    <message>
        <source>芬兰语</source>
        <translation>Finnish</translation>
    </message>
    <message>
        <source>匈牙利语(hu)</source>
        <translation>Hungarian(hu)</translation>
    </message>
    <message>
        <source>匈牙利语</source>
        <translation>Hungarian</translation>
    </message>
    <message>
        <source>罗马尼亚语(rom)</source>
        <translation>Romanian(rom)</translation>
    </message>
    <message>
        <source>罗马尼亚语</source>
        <translation>Romanian</translation>
    </message>
    <message>
        <source>保加利亚语(bul)</source>
        <translation>Bulgarian(bul)</translation>
    </message>
    <message>
        <source>保加利亚语</source>
        <translation>Bulgarian</translation>
    </message>
    <message>
        <source>爱沙尼亚语(est)</source>
        <translation>Estonian(est)</translation>
    </message>
    <message>
        <source>爱沙尼亚语</source>
        <translation>Estonian</translation>
    </message>
    <message>
        <source>斯洛文尼亚语(slo)</source>
        <translation>Slovenian(slo)</translation>
    </message>
    <message>
        <source>斯洛文尼亚语</source>
        <translation>Slovenian</translation>
    </message>
</context>
<context>
    <name>Parser</name>
    <message>
        <source>已超出该接口每月限制使用次数(1万字符），请尝试重启软件或错开时间重启软件！(f001)(</source>
        <translation>The month&apos;s limit of this interface (10,000 characters) has been exceeded. Please try starting the software again, at another time if need be! (f001)(</translation>
    </message>
    <message>
        <source>超出限量</source>
        <translation>Limit exceeded</translation>
    </message>
</context>
<context>
    <name>WXTextSpeech</name>
    <message>
        <source>系统语音无法朗读日文中的汉字！</source>
        <translation>The system&apos;s voice cannot read the Chinese characters of Japanese!</translation>
    </message>
    <message>
        <source>系统没有这种语言的语音！</source>
        <translation>The system has no voice for this language!</translation>
    </message>
    <message>
        <source>无法播放朗读的声音，请检查声音设备！</source>
        <translation>The sound cannot be played. Please check the sound device!</translation>
    </message>
</context>
<context>
    <name>mevo::OnlineReading</name>
    <message>
        <source>无法播放朗读的声音，请检查声音设备和MP3播放组件！</source>
        <translation>The sound cannot be played. Please check the sound device and the MP3 player components!</translation>
    </message>
    <message>
        <source>在线朗读失败，如网络正常且一直显示此消息，请与销售商联系！</source>
        <translation>Online reading has failed. If the network works and this message comes again and again, please contact your dealer!</translation>
    </message>
</context>
<context>
    <name>CTransTipDialog</name>
    <message>
        <source>翻译窗口</source>
        <translation>Translation window</translation>
    </message>
    <message>
        <source>立即上屏</source>
        <translation>Type at once</translation>
    </message>
    <message>
        <source>如关闭立即上屏功能，请重新打开翻译窗口并关闭</source>
        <translation>To turn typing at once off, open the translation window again and close it</translation>
    </message>
    <message>
        <source>禁用语音</source>
        <translation>Voice input off</translation>
    </message>
    <message>
        <source>进入划词翻译状态下，语音输入将被禁止！</source>
        <translation>While selections are translated, voice input is off!</translation>
    </message>
    <message>
        <source>女声</source>
        <translation>Female</translation>
    </message>
    <message>
        <source>男声</source>
        <translation>Male</translation>
    </message>
    <message>
        <source>度逍遥</source>
        <translation>Xiaoyao</translation>
    </message>
    <message>
        <source>度丫丫</source>
        <translation>Yaya</translation>
    </message>
    <message>
        <source>隐藏窗口立即上屏</source>
        <translation>Hide and type at once</translation>
    </message>
    <message>
        <source>1秒后自动上屏</source>
        <translation>Type after 1 second</translation>
    </message>
    <message>
        <source>2秒后自动上屏</source>
        <translation>Type after 2 seconds</translation>
    </message>
    <message>
        <source>3秒后自动上屏</source>
        <translation>Type after 3 seconds</translation>
    </message>
    <message>
        <source>4秒后自动上屏</source>
        <translation>Type after 4 seconds</translation>
    </message>
    <message>
        <source>5秒后自动上屏</source>
        <translation>Type after 5 seconds</translation>
    </message>
    <message>
        <source>手动点击上屏</source>
        <translation>Type when clicked</translation>
    </message>
    <message>
        <source>点击交换语言</source>
        <translation>Click to swap the languages</translation>
    </message>
    <message>
        <source>取词</source>
        <translation>Get text</translation>
    </message>
    <message>
        <source>翻译在其他窗口中选中的文字</source>
        <translation>Translates what is selected in another window</translation>
    </message>
    <message>
        <source>设置</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>关闭翻译窗口</source>
        <translation>Close the translation window</translation>
    </message>
    <message>
        <source>朗读</source>
        <translation>Read aloud</translation>
    </message>
    <message>
        <source>清空</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>原文</source>
        <translation>Source text</translation>
    </message>
    <message>
        <source>译文</source>
        <translation>Translation</translation>
    </message>
    <message>
        <source>划词翻译</source>
        <translation>Selections</translation>
    </message>
    <message>
        <source>上屏</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>原文语言</source>
        <translation>Source language</translation>
    </message>
    <message>
        <source>译文语言</source>
        <translation>Target language</translation>
    </message>
    <message>
        <source>语音翻译</source>
        <translation>Spoken</translation>
    </message>
    <message>
        <source>划词</source>
        <translation>Marked</translation>
    </message>
    <message>
        <source>在线朗读优先(中英文)</source>
        <translation>Read online first (Chinese and English)</translation>
    </message>
    <message>
        <source>音量:</source>
        <translation>Volume:</translation>
    </message>
    <message>
        <source>语速:</source>
        <translation>Speed:</translation>
    </message>
    <message>
        <source>语调:</source>
        <translation>Pitch:</translation>
    </message>
    <message>
        <source>发音人:</source>
        <translation>Reader:</translation>
    </message>
    <message>
        <source>原文自动朗读</source>
        <translation>Auto-read source</translation>
    </message>
    <message>
        <source>译文自动朗读</source>
        <translation>Auto-read translation</translation>
    </message>
</context>
<context>
    <name>CSelectSmallLanDialectDialog</name>
    <message>
        <source>请选择语种(试用功能，不保证一直提供该功能)</source>
        <translation>Choose languages (on trial, and not promised to stay)</translation>
    </message>
    <message>
        <source>选择小语种</source>
        <translation>Other languages</translation>
    </message>
</context>
<context>
    <name>CSelectXFWebApiDialectDialog</name>
    <message>
        <source>请选择方言(中文方言为试用功能，不保证一直提供该功能）</source>
        <translation>Choose dialects (on trial, and not promised to stay)</translation>
    </message>
    <message>
        <source>选择中文方言</source>
        <translation>Chinese dialects</translation>
    </message>
</context>
<context>
    <name>CSettingDialog</name>
    <message>
        <source> 常用设置</source>
        <translation>Common</translation>
    </message>
    <message>
        <source>高级设置</source>
        <translation>Advanced</translation>
    </message>
    <message>
        <source>硬件设置</source>
        <translation>Hardware</translation>
    </message>
    <message>
        <source>命令词直通车</source>
        <translation>Command prefix</translation>
    </message>
    <message>
        <source>命令前缀词上屏</source>
        <translation>Type what follows a command prefix</translation>
    </message>
    <message>
        <source>执行命令词直通车功能时，语音命令词上屏显示在输入光标处</source>
        <translation>When a command prefix is spoken, the spoken command is typed at the caret as well</translation>
    </message>
    <message>
        <source>命令前缀词：</source>
        <translation>Command prefixes:</translation>
    </message>
    <message>
        <source>搜索直通车</source>
        <translation>Search prefix</translation>
    </message>
    <message>
        <source>搜索前缀词上屏</source>
        <translation>Type what follows a search prefix</translation>
    </message>
    <message>
        <source>执行搜索直通车功能时，搜索内容上屏显示在输入光标处</source>
        <translation>When a search prefix is spoken, what is searched for is typed at the caret as well</translation>
    </message>
    <message>
        <source>搜索前缀词：</source>
        <translation>Search prefixes:</translation>
    </message>
    <message>
        <source>启用软件功能直通车</source>
        <translation>Spoken words change the function</translation>
    </message>
    <message>
        <source>语音标记词上屏</source>
        <translation>Type these words</translation>
    </message>
    <message>
        <source>执行软件直通车功能时，语音命令词上屏显示在输入光标处</source>
        <translation>When a spoken word changes the function, it is typed at the caret as well</translation>
    </message>
    <message>
        <source>软件功能选择：</source>
        <translation>Function:</translation>
    </message>
    <message>
        <source>语音打字功能</source>
        <translation>Dictation</translation>
    </message>
    <message>
        <source>语音命令功能</source>
        <translation>Voice commands</translation>
    </message>
    <message>
        <source>语音翻译功能</source>
        <translation>Voice translation</translation>
    </message>
    <message>
        <source>语音搜索功能</source>
        <translation>Voice search</translation>
    </message>
    <message>
        <source>语音键盘功能</source>
        <translation>Voice keyboard</translation>
    </message>
    <message>
        <source>语音数字键盘功能</source>
        <translation>Voice number pad</translation>
    </message>
    <message>
        <source>语音标记词：</source>
        <translation>Spoken words:</translation>
    </message>
    <message>
        <source>设置打字模式</source>
        <translation>Start with dictation</translation>
    </message>
    <message>
        <source>设置翻译模式</source>
        <translation>Start with translation</translation>
    </message>
    <message>
        <source>设置命令词模式</source>
        <translation>Start with commands</translation>
    </message>
    <message>
        <source>设置搜索模式</source>
        <translation>Start with search</translation>
    </message>
    <message>
        <source>语音命令词设置</source>
        <translation>Voice commands…</translation>
    </message>
    <message>
        <source>百度</source>
        <translation>Baidu</translation>
    </message>
    <message>
        <source>360搜索</source>
        <translation>360 Search</translation>
    </message>
    <message>
        <source>谷歌</source>
        <translation>Google</translation>
    </message>
    <message>
        <source>搜狗</source>
        <translation>Sogou</translation>
    </message>
    <message>
        <source>启用识别完立即发送功能</source>
        <translation>Send after each text</translation>
    </message>
    <message>
        <source>语音识别完上屏后自动发送快捷键，适用于QQ，微信，钉钉等软件</source>
        <translation>Presses the keys below after a text has been typed; for QQ, WeChat, DingTalk and the like</translation>
    </message>
    <message>
        <source>启用语音模拟发送功能</source>
        <translation>Send by a spoken word</translation>
    </message>
    <message>
        <source>通过语音命令模拟发送Enter等快捷键，适用于QQ，微信，钉钉等软件</source>
        <translation>Presses Enter or other keys at a spoken word; for QQ, WeChat, DingTalk and the like</translation>
    </message>
    <message>
        <source>发送映射词上屏</source>
        <translation>Type these words</translation>
    </message>
    <message>
        <source>发送映射词：</source>
        <translation>Words that send:</translation>
    </message>
    <message>
        <source>语音模拟换行</source>
        <translation>New line by a spoken word</translation>
    </message>
    <message>
        <source>换行映射词上屏</source>
        <translation>Type these words</translation>
    </message>
    <message>
        <source>换行映射词：</source>
        <translation>Words for a new line:</translation>
    </message>
    <message>
        <source>启用语音模拟删除功能</source>
        <translation>Delete by a spoken word</translation>
    </message>
    <message>
        <source>通过语音命令模拟发送退格或删除快捷键</source>
        <translation>Presses Backspace or Delete at a spoken word</translation>
    </message>
    <message>
        <source>删除映射词上屏</source>
        <translation>Type these words</translation>
    </message>
    <message>
        <source>删除映射词：</source>
        <translation>Words that delete:</translation>
    </message>
    <message>
        <source> 启用代理上网</source>
        <translation>Use a proxy</translation>
    </message>
    <message>
        <source>代理服务器：</source>
        <translation>Proxy server:</translation>
    </message>
    <message>
        <source>端口：</source>
        <translation>Port:</translation>
    </message>
    <message>
        <source>用户名：</source>
        <translation>User name:</translation>
    </message>
    <message>
        <source>密码：</source>
        <translation>Password:</translation>
    </message>
    <message>
        <source>开机自动启动软件</source>
        <translation>Start at login</translation>
    </message>
    <message>
        <source>识别错误时弹出窗口</source>
        <translation>Show recognition errors in a window</translation>
    </message>
    <message>
        <source>功能直通车</source>
        <translation>Shortcuts by voice</translation>
    </message>
    <message>
        <source>语音搜索默认搜索引擎</source>
        <translation>Search engines for voice search</translation>
    </message>
    <message>
        <source>语音打字状态下语音模拟发送/删除设置</source>
        <translation>Sending and deleting by voice while dictating</translation>
    </message>
    <message>
        <source>代理上网设置(非熟悉的用户请不要设置）</source>
        <translation>Proxy (leave as it is unless you know it)</translation>
    </message>
    <message>
        <source>其他设置</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>使用百度识别引擎</source>
        <translation>Baidu</translation>
    </message>
    <message>
        <source>使用讯飞识别引擎</source>
        <translation>XunFei</translation>
    </message>
    <message>
        <source>使用腾讯识别引擎</source>
        <translation>Tencent</translation>
    </message>
    <message>
        <source>使用第三方语音输入法</source>
        <translation>A voice input method</translation>
    </message>
    <message>
        <source>支持腾讯语音方言识别</source>
        <translation>Let Tencent recognise dialects</translation>
    </message>
    <message>
        <source>静音超时停止录音</source>
        <translation>Stop recording after silence</translation>
    </message>
    <message>
        <source>打开语音时，支持最大静音时间，如超过，则自动开始识别</source>
        <translation>Longest silence while the microphone is open; after it recognition begins by itself</translation>
    </message>
    <message>
        <source>超时时间(秒）：</source>
        <translation>After (seconds):</translation>
    </message>
    <message>
        <source>长按开启语音输入</source>
        <translation>Hold the key to speak</translation>
    </message>
    <message>
        <source>点击开始语音输入</source>
        <translation>Press the key once to speak</translation>
    </message>
    <message>
        <source>语音输入时隐藏主界面</source>
        <translation>Hide the bar during voice input</translation>
    </message>
    <message>
        <source>以管理员权限运行程序</source>
        <translation>Run as administrator</translation>
    </message>
    <message>
        <source>讯飞接口边说边出结果</source>
        <translation>Show XunFei's words while you speak</translation>
    </message>
    <message>
        <source>动态修订功能指边说话加出结果，可以修订之前错误结果</source>
        <translation>Dynamic correction: words appear while you speak, and earlier mistakes are corrected</translation>
    </message>
    <message>
        <source>中文方言(试用)</source>
        <translation>Chinese dialects (trial)</translation>
    </message>
    <message>
        <source>选择方言</source>
        <translation>Choose dialects</translation>
    </message>
    <message>
        <source>小语种(试用)</source>
        <translation>Other languages (trial)</translation>
    </message>
    <message>
        <source>选择语种</source>
        <translation>Choose languages</translation>
    </message>
    <message>
        <source>语音输入法：</source>
        <translation>Input method:</translation>
    </message>
    <message>
        <source>讯飞语音输入法</source>
        <translation>XunFei</translation>
    </message>
    <message>
        <source>搜狗语音输入法</source>
        <translation>Sogou</translation>
    </message>
    <message>
        <source>自定义语音输入法</source>
        <translation>Custom</translation>
    </message>
    <message>
        <source>选择相应输入法，暂时支持两种</source>
        <translation>Chooses the input method; two are supported so far</translation>
    </message>
    <message>
        <source>强制只使用第三方语音输入</source>
        <translation>Use only the input method</translation>
    </message>
    <message>
        <source>手动下载安装</source>
        <translation>Download and install</translation>
    </message>
    <message>
        <source>手动点击下载最新版本第三方输入法</source>
        <translation>Downloads the newest version of the input method</translation>
    </message>
    <message>
        <source>讯飞语音输入法路径：</source>
        <translation>XunFei's program:</translation>
    </message>
    <message>
        <source>搜狗语音输入法路径：</source>
        <translation>Sogou's program:</translation>
    </message>
    <message>
        <source>自定义语音输入法路径：</source>
        <translation>Custom program:</translation>
    </message>
    <message>
        <source>讯飞语音输入设置
(支持选择方言)</source>
        <translation>XunFei input settings
(with dialects)</translation>
    </message>
    <message>
        <source>讯飞鼠标手写</source>
        <translation>XunFei mouse handwriting</translation>
    </message>
    <message>
        <source>一直使用讯飞离线语音识别</source>
        <translation>Always recognise offline with XunFei</translation>
    </message>
    <message>
        <source>支持讯飞语音识别（在线+离线）</source>
        <translation>XunFei recognition, online and offline</translation>
    </message>
    <message>
        <source>识别结果上屏方式：</source>
        <translation>How text is typed:</translation>
    </message>
    <message>
        <source>自动</source>
        <translation>Automatic</translation>
    </message>
    <message>
        <source>消息</source>
        <translation>Key messages</translation>
    </message>
    <message>
        <source>粘贴</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>识别结果上屏方式有三种，如识别结果无法上屏，请尝试切换另一种</source>
        <translation>There are three ways of typing a text; if nothing appears, try another</translation>
    </message>
    <message>
        <source>手写时启用屏上键盘功能(P1/P3/P4)</source>
        <translation>On-screen keyboard while handwriting (P1/P3/P4)</translation>
    </message>
    <message>
        <source>语音命令词时识别内容不上屏</source>
        <translation>Do not type the text of a command</translation>
    </message>
    <message>
        <source>语音命令词模式下识别结果是否显示在屏幕上</source>
        <translation>Whether the text is typed in command mode</translation>
    </message>
    <message>
        <source>数字输出为中文数字(腾讯语音)</source>
        <translation>Numbers as Chinese numerals (Tencent)</translation>
    </message>
    <message>
        <source>句末自动加入标点符号</source>
        <translation>Add punctuation at the end</translation>
    </message>
    <message>
        <source>识别结果句号转逗号</source>
        <translation>Full stops become commas</translation>
    </message>
    <message>
        <source>輸出转为繁体字</source>
        <translation>Type traditional Chinese</translation>
    </message>
    <message>
        <source>采集双声道语音</source>
        <translation>Record two channels</translation>
    </message>
    <message>
        <source>录音时采集麦克风右声道声音</source>
        <translation>Record the right channel</translation>
    </message>
    <message>
        <source>优先使用产品自带麦克风录音</source>
        <translation>Prefer the product's own microphone</translation>
    </message>
    <message>
        <source>录音后麦克风保持就绪</source>
        <translation>Keep the microphone ready</translation>
    </message>
    <message>
        <source>录音后几分钟内再次录音，部分电脑上开始得更快；期间不录音，但系统可能显示麦克风在使用</source>
        <translation>For some minutes after a recording the next one begins sooner on some computers. Nothing is recorded meanwhile, but the system may show the microphone as in use</translation>
    </message>
    <message>
        <source>选择麦克风：</source>
        <translation>Microphone:</translation>
    </message>
    <message>
        <source>麦克风音量</source>
        <translation>Level</translation>
    </message>
    <message>
        <source>语音设置</source>
        <translation>Voice</translation>
    </message>
    <message>
        <source>讯飞流式版(不支持WindowsXP系统)</source>
        <translation>XunFei streaming (not on Windows XP)</translation>
    </message>
    <message>
        <source>第三方语音输入法</source>
        <translation>Voice input method</translation>
    </message>
    <message>
        <source> 输出设置</source>
        <translation>Output</translation>
    </message>
    <message>
        <source>4键</source>
        <translation>Key 4</translation>
    </message>
    <message>
        <source>5键</source>
        <translation>Key 5</translation>
    </message>
    <message>
        <source>慢速</source>
        <translation>Slow</translation>
    </message>
    <message>
        <source>标准</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>快速</source>
        <translation>Fast</translation>
    </message>
    <message>
        <source>读取电量</source>
        <translation>Read battery</translation>
    </message>
    <message>
        <source>电量</source>
        <translation>Battery</translation>
    </message>
    <message>
        <source>读取接收器编号</source>
        <translation>Read the receiver's ID</translation>
    </message>
    <message>
        <source>读取鼠标编号</source>
        <translation>Read the mouse's ID</translation>
    </message>
    <message>
        <source>检查更新</source>
        <translation>Check for updates</translation>
    </message>
    <message>
        <source>驱动下载</source>
        <translation>Driver download</translation>
    </message>
    <message>
        <source>产品使用说明</source>
        <translation>Manual</translation>
    </message>
    <message>
        <source>官方网站</source>
        <translation>Website</translation>
    </message>
    <message>
        <source> 鼠标设置</source>
        <translation>Mouse</translation>
    </message>
    <message>
        <source>回报率</source>
        <translation>Report rate</translation>
    </message>
    <message>
        <source>滚轮</source>
        <translation>Wheel</translation>
    </message>
    <message>
        <source>接收器</source>
        <translation>Receiver</translation>
    </message>
    <message>
        <source> 软件下载</source>
        <translation>Software</translation>
    </message>
    <message>
        <source>设置</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>浏览…</source>
        <translation>Browse…</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>添加分号(半角)</source>
        <translation>Add a semicolon</translation>
    </message>
    <message>
        <source>
腾讯语音支持自动识别方言，上海话、四川话、武汉话、贵阳话、昆明话、西安话、郑州话、太原话、兰州话、银川话、西宁话、南京话、合肥话、南昌话、长沙话、苏州话、杭州话、济南话、天津话、石家庄话、黑龙江话、吉林话、辽宁话等。</source>
        <translation>
Tencent recognises the dialects of Shanghai, Sichuan, Wuhan, Guiyang, Kunming, Xi'an, Zhengzhou, Taiyuan, Lanzhou, Yinchuan, Xining, Nanjing, Hefei, Nanchang, Changsha, Suzhou, Hangzhou, Jinan, Tianjin, Shijiazhuang, Heilongjiang, Jilin, Liaoning and others by itself.</translation>
    </message>
    <message>
        <source>软件功能直通车(不适用此产品)</source>
        <translation>Shortcuts by voice (not for this product)</translation>
    </message>
    <message>
        <source>软件版本号：</source>
        <translation>Version: </translation>
    </message>
    <message>
        <source>联系方式：</source>
        <translation>Contact: </translation>
    </message>
    <message>
        <source>电子邮件：</source>
        <translation>E-mail: </translation>
    </message>
    <message>
        <source>自定义</source>
        <translation>Custom</translation>
    </message>
    <message>
        <source>鼠标设置(不适用于此产品)</source>
        <translation>Mouse (not for this product)</translation>
    </message>
    <message>
        <source>电量 %1/3</source>
        <translation>Battery %1 of 3</translation>
    </message>
    <message>
        <source>已是最新版本</source>
        <translation>This is the newest version</translation>
    </message>
    <message>
        <source>打开声音控制面板</source>
        <translation>Open the sound settings</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>是否要保存？</source>
        <translation>Save it?</translation>
    </message>
    <message>
        <source>是</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>否</source>
        <translation>No</translation>
    </message>
    <message>
        <source>选择语音输入法安装路径</source>
        <translation>Choose the program of the input method</translation>
    </message>
    <message>
        <source>选择自定义语音输入法安装路径</source>
        <translation>Choose the program of the custom input method</translation>
    </message>
    <message>
        <source>检查账号</source>
        <translation>Check account</translation>
    </message>
    <message>
        <source>向服务发送一次很小的请求，检查账号是否可用</source>
        <translation>Sends one very small request to the service to see whether the account works</translation>
    </message>
    <message>
        <source>删除账号</source>
        <translation>Remove account</translation>
    </message>
    <message>
        <source>自有账号</source>
        <translation>Own accounts</translation>
    </message>
    <message>
        <source>百度语音</source>
        <translation>Baidu speech</translation>
    </message>
    <message>
        <source>腾讯语音</source>
        <translation>Tencent speech</translation>
    </message>
    <message>
        <source>讯飞语音</source>
        <translation>XunFei speech</translation>
    </message>
    <message>
        <source>百度翻译</source>
        <translation>Baidu translation</translation>
    </message>
    <message>
        <source>密钥：</source>
        <translation>Key: </translation>
    </message>
    <message>
        <source>正在检查……</source>
        <translation>Checking …</translation>
    </message>
    <message>
        <source>没有保存：%1 太长。</source>
        <translation>Not stored: %1 is too long.</translation>
    </message>
    <message>
        <source>没有保存：%1 中间有换行或看不见的字符。</source>
        <translation>Not stored: %1 has a line end or an invisible character in it.</translation>
    </message>
    <message>
        <source>系统的密钥环没有解锁或没有回应，其中保存的账号暂时不能使用。</source>
        <translation>The keyring of the desktop is locked or does not answer: the accounts kept in it cannot be used for now.</translation>
    </message>
    <message>
        <source>保存账号的文件无法读取，其中的账号暂时不能使用。</source>
        <translation>The file of the accounts cannot be read: the accounts kept in it cannot be used for now.</translation>
    </message>
    <message>
        <source>账号的改动暂存在只有您本人可以读取的文件中，退出软件也不会丢失，稍后会自动保存。</source>
        <translation>For now the changes are in a file that only you can read. They are not lost when the program ends, and are put in their place as soon as possible.</translation>
    </message>
    <message>
        <source>账号的改动还没有保存下来，会自动重试；如果先退出软件，改动会丢失。</source>
        <translation>The changes to the accounts are not stored yet. It is tried again; they are lost if you exit before that.</translation>
    </message>
    <message>
        <source>账号保存在系统的密钥环中。</source>
        <translation>The accounts are kept in the keyring of the desktop.</translation>
    </message>
    <message>
        <source>账号保存在只有您本人可以读取的文件中。</source>
        <translation>The accounts are kept in a file that only you can read.</translation>
    </message>
    <message>
        <source>在各服务商的网站申请账号，填写后优先使用自己的账号。</source>
        <translation>Accounts are had on the websites of the services. One of your own goes before all others.</translation>
    </message>
    <message>
        <source>已保存</source>
        <translation>Kept:</translation>
    </message>
    <message>
        <source>自有账号没有填写完整。</source>
        <translation>Your own account is not complete. </translation>
    </message>
    <message>
        <source>正在使用自有账号</source>
        <translation>Your own account is in use</translation>
    </message>
    <message>
        <source>没有账号</source>
        <translation>No account</translation>
    </message>
    <message>
        <source>正在使用系统提供的账号</source>
        <translation>An account that came with the product is in use</translation>
    </message>
    <message>
        <source>开始使用</source>
        <translation>Getting started</translation>
    </message>
    <message>
        <source>检查账号、接收器和麦克风是否可用</source>
        <translation>Looks whether accounts, receiver and microphone can be used</translation>
    </message>
</context>
<context>
    <name>mevo::LanguageChooser</name>
    <message>
        <source>确定</source>
        <translation>OK</translation>
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
<context>
    <name>mevo::keypad::KeypadWindow</name>
    <message>
        <source>退格</source>
        <translation>Backspace</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>制表</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>回车</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>向左</source>
        <translation>Left</translation>
    </message>
    <message>
        <source>向右</source>
        <translation>Right</translation>
    </message>
    <message>
        <source>向上</source>
        <translation>Up</translation>
    </message>
    <message>
        <source>向下</source>
        <translation>Down</translation>
    </message>
    <message>
        <source>上档</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>大写锁定</source>
        <translation>Caps Lock</translation>
    </message>
    <message>
        <source>拼音</source>
        <translation>Pinyin</translation>
    </message>
    <message>
        <source>屏幕键盘</source>
        <translation>On-screen keyboard</translation>
    </message>
    <message>
        <source>隐藏键盘</source>
        <translation>Hide the keyboard</translation>
    </message>
    <message>
        <source>上一页</source>
        <translation>Previous page</translation>
    </message>
    <message>
        <source>下一页</source>
        <translation>Next page</translation>
    </message>
    <message>
        <source>空格</source>
        <translation>Space</translation>
    </message>
    <message>
        <source>语音词：%1</source>
        <translation>Spoken words: %1</translation>
    </message>
    <message>
        <source>没有能输入文字的窗口</source>
        <translation>There is no window to type into</translation>
    </message>
    <message>
        <source>按“拼音”键输入汉字</source>
        <translation>Press Pinyin to type Chinese characters</translation>
    </message>
    <message>
        <source>拼音表是空的，请在命令词设置中添加</source>
        <translation>The pinyin table is empty: add rows in the command word settings</translation>
    </message>
    <message>
        <source>请输入拼音</source>
        <translation>Type pinyin</translation>
    </message>
    <message>
        <source>没有这个读音的字</source>
        <translation>No character sounds so</translation>
    </message>
</context>
<context>
    <name>AccountVerdict</name>
    <message>
        <source>账号可用</source>
        <translation>The account works</translation>
    </message>
    <message>
        <source>请先填写全部内容</source>
        <translation>Please fill in all fields first</translation>
    </message>
    <message>
        <source>账号不存在，请检查填写的编号或Key</source>
        <translation>There is no such account, please check the id or key</translation>
    </message>
    <message>
        <source>密钥不正确</source>
        <translation>The secret key is wrong</translation>
    </message>
    <message>
        <source>该账号没有开通此服务，或没有使用权限</source>
        <translation>The service is not activated for this account, or it may not be used from here</translation>
    </message>
    <message>
        <source>用量已用完，或请求过于频繁</source>
        <translation>The quota is used up, or there were too many requests</translation>
    </message>
    <message>
        <source>电脑的时间不正确，请校准后再试</source>
        <translation>The clock of this computer is wrong, please set it and try again</translation>
    </message>
    <message>
        <source>连接不上服务，请检查网络</source>
        <translation>The service cannot be reached, please check the network</translation>
    </message>
    <message>
        <source>服务没有应答，请稍后再试</source>
        <translation>The service does not answer, please try again later</translation>
    </message>
    <message>
        <source>服务返回了错误</source>
        <translation>The service has answered with an error</translation>
    </message>
</context>
<context>
    <name>FirstStart</name>
    <message>
        <source>语音识别：使用电脑上的语音输入法</source>
        <translation>Recognition: a voice input method of this computer is used</translation>
    </message>
    <message>
        <source>语音识别：已有账号</source>
        <translation>Recognition: there is an account</translation>
    </message>
    <message>
        <source>语音识别：没有账号</source>
        <translation>Recognition: there is no account</translation>
    </message>
    <message>
        <source>语音识别：保存的账号暂时无法读取</source>
        <translation>Recognition: the kept accounts cannot be read for now</translation>
    </message>
    <message>
        <source>接收器：已连接</source>
        <translation>Receiver: connected</translation>
    </message>
    <message>
        <source>接收器：已插入，但没有使用权限</source>
        <translation>Receiver: plugged in, but you have no permission to use it</translation>
    </message>
    <message>
        <source>接收器：没有插入，可以用屏幕上的话筒</source>
        <translation>Receiver: not plugged in; the microphone button on the screen can be used</translation>
    </message>
    <message>
        <source>接收器：没有找到，请插入电脑的USB接口</source>
        <translation>Receiver: not found, please plug it into a USB port</translation>
    </message>
    <message>
        <source>麦克风：已找到</source>
        <translation>Microphone: found</translation>
    </message>
    <message>
        <source>麦克风：没有找到</source>
        <translation>Microphone: not found</translation>
    </message>
    <message>
        <source>填写自有账号</source>
        <translation>Enter an account of your own</translation>
    </message>
    <message>
        <source>使用电脑上的输入法</source>
        <translation>Use an input method of this computer</translation>
    </message>
    <message>
        <source>选择麦克风</source>
        <translation>Choose a microphone</translation>
    </message>
    <message>
        <source>取得权限</source>
        <translation>Get permission</translation>
    </message>
</context>
<context>
    <name>FirstStartDialog</name>
    <message>
        <source>开始使用</source>
        <translation>Getting started</translation>
    </message>
    <message>
        <source>在终端中运行下面的命令，再重新插入接收器：</source>
        <translation>Run this command in a terminal, then plug the receiver in anew:</translation>
    </message>
    <message>
        <source>复制命令</source>
        <translation>Copy command</translation>
    </message>
    <message>
        <source>点这里，按住话筒键说一句话</source>
        <translation>Click here, hold the voice key and say something</translation>
    </message>
    <message>
        <source>试一试：</source>
        <translation>Try it: </translation>
    </message>
    <message>
        <source>以后可以在“设置”的“硬件设置”页的“软件下载”中再次打开本窗口。</source>
        <translation>This window can be opened again from “Software” on the page “Hardware” of the settings.</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>正常</source>
        <translation>Works</translation>
    </message>
    <message>
        <source>缺少</source>
        <translation>Missing</translation>
    </message>
    <message>
        <source>未知</source>
        <translation>Not known</translation>
    </message>
</context>
</TS>
